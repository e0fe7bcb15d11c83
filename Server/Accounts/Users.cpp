#include "Accounts/Users.h"

#include "Platform/Text.h"

#include <QString>
#include <QTimeZone>

namespace stillgate::server
{

namespace
{

constexpr std::size_t minimumPassword = 10;
constexpr std::size_t maximumPassword = 1000; // bytes: a hash has to end some time
constexpr std::size_t maximumText = 200;      // bytes, of a name or an address

bool isEmail(const std::string& text)
{
    const auto at = text.find('@');
    const auto domain = at == std::string::npos ? std::string{} : text.substr(at + 1);
    const bool hasForbidden =
        std::ranges::any_of(text, [](unsigned char letter) { return letter <= ' ' || letter == 0x7F; });
    return at != 0 && !domain.empty() && domain.find('@') == std::string::npos && text.size() <= maximumText &&
        !hasForbidden;
}

} // namespace

std::string normalizedEmail(const std::string& typed)
{
    return QString::fromStdString(std::string{trimmed(typed)}).toLower().toStdString();
}

bool isTimeZone(const std::string& identifier)
{
    return QTimeZone::isTimeZoneIdAvailable(QByteArray::fromStdString(identifier));
}

std::optional<SignUpFault> faultOf(const SignUp& form)
{
    if (trimmed(form.displayName).empty())
        return SignUpFault::nameMissing;
    if (form.displayName.size() > maximumText)
        return SignUpFault::nameTooLong;
    if (!isEmail(normalizedEmail(form.email)))
        return SignUpFault::emailInvalid;
    if (form.password.size() < minimumPassword)
        return SignUpFault::passwordTooShort;
    if (form.password.size() > maximumPassword)
        return SignUpFault::passwordTooLong;
    return std::nullopt;
}

std::expected<std::string, SignUpFault> createUser(
    Database& database, const SignUp& form, const std::string& hash, Date now)
{
    const auto email = normalizedEmail(form.email);
    if (credentialsOf(database, email))
        return std::unexpected{SignUpFault::emailTaken};
    auto id = newId();
    const auto timeZone = isTimeZone(form.timeZone) ? form.timeZone : QTimeZone::systemTimeZoneId().toStdString();
    database.execute("INSERT INTO users (id, email, display_name, password_hash, time_zone, language, created_at) "
                     "VALUES (?, ?, ?, ?, ?, ?, ?)",
        id, email, std::string{trimmed(form.displayName)}, hash, timeZone, form.language, now);
    return id;
}

SGUser userById(Database& database, const std::string& userId)
{
    auto user = database.first<SGUser>("SELECT id, email, display_name FROM users WHERE id = ?", userId);
    if (!user)
        throw std::logic_error{"An account is gone that was just there"};
    return *user;
}

std::optional<Credentials> credentialsOf(Database& database, const std::string& email)
{
    return database.first<Credentials>("SELECT id, password_hash FROM users WHERE email = ?", normalizedEmail(email));
}

std::string replacePassword(Database& database, const std::string& email, const std::string& password)
{
    if (password.size() < minimumPassword || password.size() > maximumPassword)
        return "A password has 10 characters at least, and 1000 at most";
    const auto hash = passwordHash(password, ordinaryPasswordCost());
    return database.inTransaction([&]() -> std::string {
        const auto known = credentialsOf(database, email);
        if (!known)
            return "There is no account with this address";
        database.execute("UPDATE users SET password_hash = ? WHERE id = ?", hash, known->id);
        database.execute("DELETE FROM web_sessions WHERE user_id = ?", known->id);
        database.execute("DELETE FROM sign_ins WHERE user_id = ?", known->id);
        return {};
    });
}

void deleteUser(Database& database, const std::string& userId)
{
    const auto subjects = "(SELECT ? UNION SELECT ?)";
    database.execute(std::string{"DELETE FROM attempts WHERE subject IN "} + subjects, digestOf(userId),
        digestOf(userById(database, userId).email));
    database.execute("DELETE FROM users WHERE id = ?", userId); // and what hangs on it, by its foreign keys
}

} // namespace stillgate::server
