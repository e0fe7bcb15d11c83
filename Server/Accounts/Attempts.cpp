#include "Accounts/Attempts.h"

#include "Accounts/Secrets.h"

#include <algorithm>

namespace stillgate::server
{

std::optional<std::string> Attempts::take(const std::vector<std::string>& subjects, Date now)
{
    const auto isUsedUp = [&](const std::string& subject) {
        return m_database.number("SELECT COUNT(*) FROM attempts WHERE purpose = ? AND subject = ? AND made_at > ?",
                   m_purpose, digestOf(subject), now - period) >= m_limit;
    };
    if (std::ranges::any_of(subjects, isUsedUp))
        return std::nullopt;
    auto id = newId();
    for (const auto& subject : subjects)
        m_database.execute("INSERT INTO attempts (id, purpose, subject, made_at) VALUES (?, ?, ?, ?)", id, m_purpose,
            digestOf(subject), now);
    return id;
}

void Attempts::giveBack(const std::string& id)
{
    m_database.execute("DELETE FROM attempts WHERE id = ?", id);
}

} // namespace stillgate::server
