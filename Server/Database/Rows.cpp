#include "Database/Rows.h"

namespace stillgate::server
{

std::string columnName(std::string_view key)
{
    std::string name;
    for (const char letter : key) {
        const bool isCapital = letter >= 'A' && letter <= 'Z';
        if (isCapital)
            name += '_';
        name += isCapital ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return name;
}

} // namespace stillgate::server
