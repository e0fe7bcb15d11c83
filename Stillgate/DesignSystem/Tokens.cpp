#include "DesignSystem/Tokens.h"

namespace stillgate
{

QColor colorFromHex(QStringView text)
{
    const auto isPadding = [](QChar character) { return !character.isLetterOrNumber(); };
    while (!text.isEmpty() && isPadding(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isPadding(text.back()))
        text.chop(1);

    bool isNumber = false;
    const uint number = text.toUInt(&isNumber, 16);
    const uint value = isNumber ? number : 0;
    switch (text.size()) {
    case 6:
        return QColor::fromRgb(value);
    case 8:
        return QColor::fromRgba(value);
    default:
        return QColor::fromRgb(0, 0, 0);
    }
}

QColor Tokens::withOpacity(QColor color, float opacity)
{
    color.setAlphaF(opacity);
    return color;
}

const Tokens& tokens()
{
    static const Tokens instance;
    return instance;
}

} // namespace stillgate
