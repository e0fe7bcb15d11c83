#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace stillgate
{

/// The lines of a text that aren't blank, without the blanks at their ends.
[[nodiscard]] inline std::vector<std::string> enteredDomains(const QString& text)
{
    static const QRegularExpression lineBreak{"[\\n\\r\\x{2028}\\x{2029}]"};
    std::vector<std::string> domains;
    for (const auto& line : text.split(lineBreak)) {
        if (const auto domain = line.trimmed(); !domain.isEmpty())
            domains.push_back(domain.toStdString());
    }
    return domains;
}

} // namespace stillgate
