#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// The colour that a hexadecimal text names, in sRGB: AARRGGBB or RRGGBB, whatever stands around it that is neither a
/// letter nor a digit. A text of any other length is opaque black.
QColor colorFromHex(QStringView text);

/// The names for everything that has a colour or a measure: no other file writes one. Lengths are logical pixels.
/// The look is the same in a light and in a dark desktop.
class Tokens : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(QColor sgBgPrimary MEMBER sgBgPrimary CONSTANT)
    Q_PROPERTY(QColor sgBgSecondary MEMBER sgBgSecondary CONSTANT)
    Q_PROPERTY(QColor sgBgElevated MEMBER sgBgElevated CONSTANT)
    Q_PROPERTY(QColor sgBgSidebar MEMBER sgBgSidebar CONSTANT)
    Q_PROPERTY(QColor sgTextPrimary MEMBER sgTextPrimary CONSTANT)
    Q_PROPERTY(QColor sgTextSecondary MEMBER sgTextSecondary CONSTANT)
    Q_PROPERTY(QColor sgTextMuted MEMBER sgTextMuted CONSTANT)
    Q_PROPERTY(QColor sgAccent MEMBER sgAccent CONSTANT)
    Q_PROPERTY(QColor sgSuccess MEMBER sgSuccess CONSTANT)
    Q_PROPERTY(QColor sgDanger MEMBER sgDanger CONSTANT)
    Q_PROPERTY(QColor sgWarning MEMBER sgWarning CONSTANT)
    Q_PROPERTY(QColor sgBorder MEMBER sgBorder CONSTANT)
    Q_PROPERTY(QColor sgAurora1 MEMBER sgAurora1 CONSTANT)
    Q_PROPERTY(QColor sgAurora2 MEMBER sgAurora2 CONSTANT)
    Q_PROPERTY(QColor sgAurora3 MEMBER sgAurora3 CONSTANT)
    Q_PROPERTY(QColor sgStreakFire MEMBER sgStreakFire CONSTANT)
    Q_PROPERTY(QColor sgGlass MEMBER sgGlass CONSTANT)
    Q_PROPERTY(QColor sgGlassBorder MEMBER sgGlassBorder CONSTANT)
    Q_PROPERTY(QColor sgGlassHeavy MEMBER sgGlassHeavy CONSTANT)
    Q_PROPERTY(QColor sgGradientStart MEMBER sgGradientStart CONSTANT)
    Q_PROPERTY(QColor sgGradientEnd MEMBER sgGradientEnd CONSTANT)
    Q_PROPERTY(QColor sgGambling MEMBER sgGambling CONSTANT)
    Q_PROPERTY(QColor sgSocialMedia MEMBER sgSocialMedia CONSTANT)
    Q_PROPERTY(QColor sgAdult MEMBER sgAdult CONSTANT)
    Q_PROPERTY(QColor sgGaming MEMBER sgGaming CONSTANT)
    Q_PROPERTY(QColor sgNews MEMBER sgNews CONSTANT)
    Q_PROPERTY(QColor sgStreaming MEMBER sgStreaming CONSTANT)
    Q_PROPERTY(QColor sgShopping MEMBER sgShopping CONSTANT)

    Q_PROPERTY(QColor gold MEMBER gold CONSTANT)
    Q_PROPERTY(QColor green MEMBER green CONSTANT)
    Q_PROPERTY(QColor blue MEMBER blue CONSTANT)
    Q_PROPERTY(QColor yellow MEMBER yellow CONSTANT)
    Q_PROPERTY(QColor cyan MEMBER cyan CONSTANT)
    Q_PROPERTY(QColor orange MEMBER orange CONSTANT)

    Q_PROPERTY(QColor clear MEMBER clear CONSTANT)
    Q_PROPERTY(QColor white MEMBER white CONSTANT)
    Q_PROPERTY(QColor black MEMBER black CONSTANT)

    Q_PROPERTY(int radiusSmall MEMBER radiusSmall CONSTANT)
    Q_PROPERTY(int radiusMedium MEMBER radiusMedium CONSTANT)
    Q_PROPERTY(int radiusLarge MEMBER radiusLarge CONSTANT)
    Q_PROPERTY(int radiusExtraLarge MEMBER radiusExtraLarge CONSTANT)

    Q_PROPERTY(int space4 MEMBER space4 CONSTANT)
    Q_PROPERTY(int space8 MEMBER space8 CONSTANT)
    Q_PROPERTY(int space12 MEMBER space12 CONSTANT)
    Q_PROPERTY(int space16 MEMBER space16 CONSTANT)
    Q_PROPERTY(int space24 MEMBER space24 CONSTANT)
    Q_PROPERTY(int space32 MEMBER space32 CONSTANT)

public:
    const QColor sgBgPrimary = colorFromHex(u"09090B");
    const QColor sgBgSecondary = colorFromHex(u"18181B");
    const QColor sgBgElevated = colorFromHex(u"27272A");
    const QColor sgBgSidebar = colorFromHex(u"0D0D12");
    const QColor sgTextPrimary = colorFromHex(u"FAFAFA");
    const QColor sgTextSecondary = colorFromHex(u"A1A1AA");
    const QColor sgTextMuted = colorFromHex(u"52525B"); ///< For hints alone: too dark for what has to be read.
    const QColor sgAccent = colorFromHex(u"818CF8");
    const QColor sgSuccess = colorFromHex(u"34D399");
    const QColor sgDanger = colorFromHex(u"F87171");
    const QColor sgWarning = colorFromHex(u"FBBF24");
    const QColor sgBorder = colorFromHex(u"27272A");
    const QColor sgAurora1 = colorFromHex(u"818CF8");
    const QColor sgAurora2 = colorFromHex(u"C084FC");
    const QColor sgAurora3 = colorFromHex(u"22D3EE");
    const QColor sgStreakFire = colorFromHex(u"F59E0B");
    const QColor sgGlass = translucentWhite(0.06F);
    const QColor sgGlassBorder = translucentWhite(0.08F);
    const QColor sgGlassHeavy = translucentWhite(0.12F);
    const QColor sgGradientStart = colorFromHex(u"818CF8");
    const QColor sgGradientEnd = colorFromHex(u"6366F1");
    const QColor sgGambling = colorFromHex(u"F87171");
    const QColor sgSocialMedia = colorFromHex(u"818CF8");
    const QColor sgAdult = colorFromHex(u"FB923C");
    const QColor sgGaming = colorFromHex(u"34D399");
    const QColor sgNews = colorFromHex(u"FBBF24");
    const QColor sgStreaming = colorFromHex(u"F472B6");
    const QColor sgShopping = colorFromHex(u"A78BFA");

    // Of the ladder of streaks.
    const QColor gold = colorFromHex(u"FFD700");
    const QColor green = colorFromHex(u"4ADE80");
    const QColor blue = colorFromHex(u"60A5FA");
    const QColor yellow = colorFromHex(u"FACC15");
    const QColor cyan = colorFromHex(u"22D3EE");
    const QColor orange = colorFromHex(u"FB923C");

    const QColor clear = translucentWhite(0);
    const QColor white = translucentWhite(1);
    const QColor black = colorFromHex(u"000000");

    static constexpr int radiusSmall = 8;
    static constexpr int radiusMedium = 12;     ///< Buttons and fields.
    static constexpr int radiusLarge = 16;      ///< Cards.
    static constexpr int radiusExtraLarge = 20; ///< Sheets, and the card that a window is about.

    static constexpr int space4 = 4;
    static constexpr int space8 = 8;
    static constexpr int space12 = 12;
    static constexpr int space16 = 16;
    static constexpr int space24 = 24;
    static constexpr int space32 = 32;

    /// `color` with its opacity replaced, from 0 to 1.
    Q_INVOKABLE static QColor withOpacity(QColor color, float opacity);

private:
    static QColor translucentWhite(float opacity) { return QColor::fromRgbF(1, 1, 1, opacity); }
};

/// The tokens, for C++ outside QML.
const Tokens& tokens();

} // namespace stillgate
