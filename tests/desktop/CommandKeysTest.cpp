#include "Views/Windows/CommandKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>
#include <gtest/gtest.h>

#include <vector>

namespace stillgate::test
{

TEST(CommandKeys, areTheCharactersThatTheKeyTypes)
{
    std::vector<std::string> taken;
    const CommandKeys keys{CommandKeys::Handler{[&taken](const std::string& characters) {
        taken.push_back(characters);
        return characters == "d";
    }}};
    QWindow window;
    const auto isTaken = [&](int key, Qt::KeyboardModifiers modifiers, quint32 native) {
        QKeyEvent event{QEvent::KeyPress, key, modifiers, 0, native, 0};
        taken.clear();
        event.ignore();
        return QCoreApplication::sendEvent(&window, &event);
    };

    struct Case
    {
        int key;
        Qt::KeyboardModifiers modifiers;
        quint32 native; ///< keysym; 0 where the platform has none
        const char* characters;
    };

    for (const auto& [key, modifiers, native, characters] : {
             Case{Qt::Key_D, Qt::ControlModifier, 'd', "d"},
             Case{Qt::Key_D, Qt::ControlModifier, 'D', "D"}, // with Caps Lock
             Case{Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier, 'D', "D"},
             Case{Qt::Key_D, Qt::ControlModifier | Qt::AltModifier, 'd', "d"},
             Case{Qt::Key_D, Qt::ControlModifier, 0, "d"},
             Case{Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier, 0, "D"},
             Case{Qt::Key_F5, Qt::ControlModifier, 0xffc2, ""},
         }) {
        (void)isTaken(key, modifiers, native);
        EXPECT_EQ(taken, std::vector<std::string>{characters}) << key << ' ' << native;
    }
    EXPECT_TRUE(isTaken(Qt::Key_D, Qt::ControlModifier, 'd'));
    (void)isTaken(Qt::Key_D, Qt::NoModifier, 'd');
    EXPECT_TRUE(taken.empty()) << "a key without Control is nobody's business";
}

} // namespace stillgate::test
