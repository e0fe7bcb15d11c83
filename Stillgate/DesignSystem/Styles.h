#pragma once

#include <QColor>
#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// How a category, such as "gaming", is shown.
struct CategoryStyle
{
    Q_GADGET
    QML_VALUE_TYPE(categoryStyle)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)

public:
    QString symbol;
    QColor color;
};

/// How the policy of a block, such as "permanent", is shown.
struct PolicyStyle
{
    Q_GADGET
    QML_VALUE_TYPE(policyStyle)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)

public:
    QString symbol;
    QString text;
    QColor color;
};

/// The colours of an SGButton. A clear `outline` is none.
struct ButtonColors
{
    Q_GADGET
    QML_VALUE_TYPE(buttonColors)
    Q_PROPERTY(QColor background MEMBER background CONSTANT)
    Q_PROPERTY(QColor hovered MEMBER hovered CONSTANT)
    Q_PROPERTY(QColor pressed MEMBER pressed CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor outline MEMBER outline CONSTANT)

public:
    QColor background;
    QColor hovered;
    QColor pressed;
    QColor text;
    QColor outline;
};

/// The face of a text: everything of its font but the family, which is the desktop's.
struct TextFace
{
    Q_GADGET
    QML_VALUE_TYPE(textFace)
    Q_PROPERTY(int size MEMBER size CONSTANT)
    Q_PROPERTY(int weight MEMBER weight CONSTANT)
    Q_PROPERTY(double tracking MEMBER tracking CONSTANT)
    Q_PROPERTY(int lineHeight MEMBER lineHeight CONSTANT)
    Q_PROPERTY(double leading MEMBER leading CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)

public:
    int size = 0;        ///< Logical pixels, as are all lengths here.
    int weight = 0;      ///< As in QFont::Weight.
    double tracking = 0; ///< Between two letters.
    int lineHeight = 0;  ///< From one base line to the next.
    double leading = 0;  ///< What `lineHeight` has over the height of the desktop's font; may be negative.
    QColor color;
};

/// One of a few things to choose from. It has a symbol or a glyph, an emoji; it may have a description.
struct Choice
{
    Q_GADGET
    QML_VALUE_TYPE(choice)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString glyph MEMBER glyph CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString description MEMBER description CONSTANT)

public:
    QString symbol;
    QString glyph;
    QString title;
    QString description;
};

/// What the components look up by a name or a number.
class Styles : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    enum class ButtonStyle { Primary, Secondary, Outline, Danger, Ghost };
    Q_ENUM(ButtonStyle)

    enum class TextStyle { Hero, Title, Figure, ButtonTitle, Body, BodySmall, Caption, Hint, Label };
    Q_ENUM(TextStyle)

    /// A category or policy that isn't known has a look too: a newer server may send one.
    Q_INVOKABLE static stillgate::CategoryStyle category(const QString& category);
    Q_INVOKABLE static stillgate::PolicyStyle policy(const QString& policy);

    Q_INVOKABLE static stillgate::ButtonColors button(stillgate::Styles::ButtonStyle style);
    Q_INVOKABLE static stillgate::TextFace text(stillgate::Styles::TextStyle style);

    /// The colours of a progress bar's fill from left to right: `gradient`, or those of a warning if `showsWarning` and
    /// more than 0.8 of it is used.
    Q_INVOKABLE static QList<QColor> progressGradient(double value, const QList<QColor>& gradient, bool showsWarning);
};

} // namespace stillgate
