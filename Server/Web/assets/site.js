// Tells the server when this account's day begins. Without it, the account starts in the server's own time zone.
for (const input of document.querySelectorAll('input[type="hidden"][name="timeZone"]')) {
  input.value = Intl.DateTimeFormat().resolvedOptions().timeZone || input.value;
}

// A code that was wrong is typed over, not into.
for (const input of document.querySelectorAll('input[aria-invalid="true"]')) {
  input.select();
}
