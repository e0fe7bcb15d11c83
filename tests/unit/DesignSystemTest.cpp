#include "DesignSystem/ProgressCapsule.h"
#include "DesignSystem/Styles.h"
#include "DesignSystem/TextCase.h"
#include "DesignSystem/Tokens.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace stillgate
{

TEST(DesignSystem, readsColorsFromHex)
{
    EXPECT_EQ(colorFromHex(u"#818cf8"), QColor(0x81, 0x8C, 0xF8));
    EXPECT_EQ(colorFromHex(u"80FF0001"), QColor(0xFF, 0x00, 0x01, 0x80));
    for (const auto* text : {u"", u"FFF", u"FFF FFF", u"GGGGGG", u"FFFFFFFFF"})
        EXPECT_EQ(colorFromHex(text), QColor(Qt::black));
}

TEST(DesignSystem, showsWhatANewerServerSends)
{
    EXPECT_EQ(Styles::category("weather").symbol, "lock.shield.fill");
    EXPECT_EQ(Styles::policy("lunar").text, "lunar");
}

TEST(DesignSystem, warnsAboveFourFifths)
{
    const QList<QColor> calm{Qt::blue, Qt::green};
    const QList<QColor> warning{tokens().sgWarning, tokens().sgDanger};

    EXPECT_EQ(Styles::progressGradient(0.8, calm, true), calm);
    EXPECT_EQ(Styles::progressGradient(0.81, calm, true), warning);
    EXPECT_EQ(Styles::progressGradient(1.5, calm, false), calm);
}

TEST(DesignSystem, fillsNoMoreThanTheTrack)
{
    const auto filledPixels = [](double fraction) {
        QImage image{100, 5, QImage::Format_ARGB32_Premultiplied};
        image.fill(Qt::transparent);
        ProgressCapsule capsule;
        capsule.setSize(image.size());
        capsule.setProperty("gradient", QVariant::fromValue(QList<QColor>{Qt::green, Qt::red}));
        capsule.setProperty("fraction", fraction);
        QPainter painter{&image};
        capsule.paint(&painter);
        int count = 0;
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, 2).saturation() > 100 ? 1 : 0;
        // The last colour stands at the end of the fill, wherever that is.
        EXPECT_TRUE(count == 0 || image.pixelColor(count - 2, 2).red() > 230) << fraction;
        return count;
    };

    for (const auto& [fraction, pixels] : {std::pair{-1.0, 0}, {0, 0}, {0.5, 50}, {1.5, 100}})
        EXPECT_EQ(filledPixels(fraction), pixels);
}

TEST(DesignSystem, changesCaseInTheApplicationsLanguage)
{
    const QLocale before;
    QLocale::setDefault(QLocale{"tr"});
    EXPECT_EQ(TextCase::upperCase(u"istatistik, ışık"_qs), u"İSTATİSTİK, IŞIK"_qs);
    QLocale::setDefault(QLocale{"en"});
    EXPECT_EQ(TextCase::upperCase(u"limits"_qs), u"LIMITS"_qs);
    QLocale::setDefault(before);
}

} // namespace stillgate
