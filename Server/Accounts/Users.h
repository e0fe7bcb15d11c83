#pragma once

#include "Accounts/Secrets.h"
#include "Database/Database.h"
#include "Models/Account.h"

#include <optional>
#include <string>

namespace stillgate::server
{

/// What somebody fills in to get an account.
struct SignUp
{
    std::string email;
    std::string displayName;
    std::string password;
    std::string timeZone; ///< IANA identifier; anything else means the server's own
    std::string language; ///< "en" or "tr"
};

enum class SignUpFault { emailInvalid, emailTaken, nameMissing, nameTooLong, passwordTooShort, passwordTooLong };

/// What is wrong with it as it stands.
[[nodiscard]] std::optional<SignUpFault> faultOf(const SignUp& form);

/// Gives the new account's id. The hash of the password is made beforehand, outside of the transaction: it takes long.
[[nodiscard]] std::expected<std::string, SignUpFault> createUser(
    Database& database, const SignUp& form, const std::string& hash, Date now);

[[nodiscard]] SGUser userById(Database& database, const std::string& userId);

/// An account's id and password hash, by e-mail address in any case.
struct Credentials
{
    std::string id;
    std::string passwordHash;

    STILLGATE_RECORD(Credentials, id, passwordHash);
};

[[nodiscard]] std::optional<Credentials> credentialsOf(Database& database, const std::string& email);

/// Gives the account a new password, and signs it out everywhere. Gives a sentence that says what was wrong, or
/// nothing.
[[nodiscard]] std::string replacePassword(Database& database, const std::string& email, const std::string& password);

/// The account and everything of it, what others have of it included.
void deleteUser(Database& database, const std::string& userId);

/// An address as it is stored and compared: without blanks around it, in lower case.
[[nodiscard]] std::string normalizedEmail(const std::string& typed);

[[nodiscard]] bool isTimeZone(const std::string& identifier);

} // namespace stillgate::server
