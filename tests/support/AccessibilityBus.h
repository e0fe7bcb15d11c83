#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace stillgate::test
{

/// What a screen reader sees of this desktop's programs (AT-SPI 2), through the bus that they tell it on. Every call
/// runs the event loop until its answer is there, so that the program asked may be this one; ten seconds at most.
class AccessibilityBus
{
public:
    struct Object
    {
        QString service; ///< the program's name on the bus
        QDBusObjectPath path;

        bool operator==(const Object&) const = default;
    };

    // As AT-SPI numbers them.
    enum class Role : unsigned {
        Alert = 2,
        CheckBox = 7,
        Dialog = 16,
        Frame = 23,
        Label = 29,
        PushButton = 43,
        RadioButton = 44,
        Text = 61, ///< to be written
        Heading = 83
    };
    enum class State : unsigned { Focusable = 11, Focused = 12, Showing = 25 };

    /// Tells every program that a screen reader listens.
    AccessibilityBus();
    ~AccessibilityBus();

    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    /// The program of this process; nothing while it hasn't come to the bus.
    [[nodiscard]] std::optional<Object> application(qint64 processId) const;

    [[nodiscard]] std::vector<Object> children(const Object& object) const;
    [[nodiscard]] QString name(const Object& object) const;
    [[nodiscard]] Role role(const Object& object) const;
    [[nodiscard]] bool is(const Object& object, State state) const;

    /// Does the object's first action; whether it has one and says that it did.
    [[nodiscard]] bool doAction(const Object& object) const;

    /// Whether it says that it took the keyboard, as far as its window has it.
    [[nodiscard]] bool takeFocus(const Object& object) const;

    /// The first below `root` of which it is true, in the order of the tree.
    [[nodiscard]] std::optional<Object> find(
        const Object& root, const std::function<bool(const Object&)>& isWanted) const;

    /// The first of this role and name.
    [[nodiscard]] std::optional<Object> find(const Object& root, Role role, const QString& name) const;

private:
    QDBusConnection m_connection;
};

} // namespace stillgate::test
