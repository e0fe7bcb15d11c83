#include "DesignSystem/Styles.h"

#include "DesignSystem/Tokens.h"

#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace stillgate
{

namespace
{

constexpr double warningThreshold = 0.8;

using Color = const QColor Tokens::*;

constexpr struct
{
    QStringView category;
    QStringView symbol;
    Color color;
} categories[] = {
    {u"social_media", u"bubble.left.and.bubble.right.fill", &Tokens::sgSocialMedia},
    {u"gaming", u"gamecontroller.fill", &Tokens::sgGaming},
    {u"streaming", u"play.tv.fill", &Tokens::sgStreaming},
    {u"gambling", u"dice.fill", &Tokens::sgGambling},
    {u"shopping", u"bag.fill", &Tokens::sgShopping},
    {u"adult", u"eye.slash.fill", &Tokens::sgAdult},
    {u"news", u"newspaper.fill", &Tokens::sgNews},
};

constexpr struct
{
    QStringView policy;
    QStringView symbol;
    QStringView text;
    Color color;
} policies[] = {
    {u"flexible", u"lock.open.fill", u"Flexible", &Tokens::sgSuccess},
    {u"permanent", u"lock.fill", u"Permanent", &Tokens::sgDanger},
    {u"cooldown", u"clock.fill", u"Cooldown", &Tokens::sgWarning},
    {u"group_approval", u"person.2.fill", u"Group", &Tokens::sgAccent},
};

constexpr struct
{
    Styles::TextStyle style;
    int size;
    QFont::Weight weight;
    double tracking;
    int lineHeight;
    Color color;
} textFaces[] = {
    {Styles::TextStyle::Hero, 28, QFont::Bold, -0.4, 36, &Tokens::sgTextPrimary},
    {Styles::TextStyle::Title, 20, QFont::DemiBold, -0.2, 26, &Tokens::sgTextPrimary},
    {Styles::TextStyle::Figure, 22, QFont::DemiBold, -0.2, 28, &Tokens::sgTextPrimary},
    {Styles::TextStyle::ButtonTitle, 16, QFont::DemiBold, 0, 22, &Tokens::sgTextPrimary},
    {Styles::TextStyle::Body, 14, QFont::Normal, 0, 20, &Tokens::sgTextPrimary},
    {Styles::TextStyle::BodySmall, 13, QFont::Normal, 0, 18, &Tokens::sgTextSecondary},
    {Styles::TextStyle::Caption, 12, QFont::Normal, 0, 16, &Tokens::sgTextSecondary},
    {Styles::TextStyle::Hint, 12, QFont::Normal, 0, 16, &Tokens::sgTextMuted},
    {Styles::TextStyle::Label, 11, QFont::Medium, 0.8, 16, &Tokens::sgTextMuted},
};

} // namespace

CategoryStyle Styles::category(const QString& category)
{
    const auto* row =
        std::ranges::find(categories, QStringView{category}, [](const auto& each) { return each.category; });
    if (row == std::end(categories))
        return {.symbol = u"lock.shield.fill"_qs, .color = tokens().sgAccent};
    return {.symbol = row->symbol.toString(), .color = tokens().*row->color};
}

PolicyStyle Styles::policy(const QString& policy)
{
    const auto* row = std::ranges::find(policies, QStringView{policy}, [](const auto& each) { return each.policy; });
    if (row == std::end(policies))
        return {.symbol = u"lock.fill"_qs, .text = policy, .color = tokens().sgTextMuted};
    return {.symbol = row->symbol.toString(), .text = row->text.toString(), .color = tokens().*row->color};
}

ButtonColors Styles::button(ButtonStyle style)
{
    const Tokens& all = tokens();
    switch (style) {
    case ButtonStyle::Primary:
        return {all.white, Tokens::withOpacity(all.white, 0.9F), Tokens::withOpacity(all.white, 0.8F), all.black,
            all.clear};
    case ButtonStyle::Secondary:
    case ButtonStyle::Outline:
        return {all.clear, all.sgGlass, all.sgGlassHeavy, all.sgTextPrimary, all.sgBorder};
    case ButtonStyle::Danger:
        return {Tokens::withOpacity(all.sgDanger, 0.1F), Tokens::withOpacity(all.sgDanger, 0.16F),
            Tokens::withOpacity(all.sgDanger, 0.24F), all.sgDanger, all.clear};
    case ButtonStyle::Ghost:
        return {all.clear, all.sgGlass, all.sgGlassHeavy, all.sgTextSecondary, all.clear};
    }
    std::unreachable();
}

TextFace Styles::text(TextStyle style)
{
    const auto& row = *std::ranges::find(textFaces, style, [](const auto& each) { return each.style; });
    QFont font = QGuiApplication::font();
    font.setPixelSize(row.size);
    font.setWeight(row.weight);
    return {.size = row.size,
        .weight = row.weight,
        .tracking = row.tracking,
        .lineHeight = row.lineHeight,
        .leading = row.lineHeight - QFontMetricsF{font}.height(),
        .color = tokens().*row.color};
}

QList<QColor> Styles::progressGradient(double value, const QList<QColor>& gradient, bool showsWarning)
{
    if (showsWarning && value > warningThreshold)
        return {tokens().sgWarning, tokens().sgDanger};
    return gradient;
}

} // namespace stillgate
