#include "Views/Tasks/CreateTaskViewModel.h"

#include "Views/Common/TextOf.h"

#include <cmath>

namespace stillgate
{

namespace
{

constexpr const char* emojiTexts[] = {"📋", "📚", "🏃", "🎵", "🧹", "🍳", "🧘", "📖", "🎨", "💪"};

constexpr struct
{
    const char* type; // as the server knows it
    const char* title;
} repeats[] = {
    {"once", "tasks.once"},
    {"daily", "tasks.daily"},
    {"weekly", "tasks.weekly"},
};

} // namespace

CreateTaskViewModel::CreateTaskViewModel(Creation create)
    : m_create(std::move(create))
{}

QList<QString> CreateTaskViewModel::emojis()
{
    return {std::begin(emojiTexts), std::end(emojiTexts)};
}

QList<QString> CreateTaskViewModel::repeatTitles()
{
    QList<QString> titles;
    for (const auto& repeat : repeats)
        titles << textOf(repeat.title);
    return titles;
}

QString CreateTaskViewModel::rewardText() const
{
    return QString::number(std::lround(m_rewardMinutes)) + 'm';
}

void CreateTaskViewModel::create()
{
    if (!canCreate())
        return;
    m_isCreating = true;
    Q_EMIT changed();
    m_create(body());
}

CreateTaskBody CreateTaskViewModel::body() const
{
    return {
        .title = m_title.toStdString(),
        .description = m_description.isEmpty() ? std::nullopt : std::optional{m_description.toStdString()},
        .emoji = emojiTexts[m_selectedEmoji],
        .rewardMinutes = std::lround(m_rewardMinutes),
        .repeatType = repeats[m_selectedRepeat].type,
        .requiresProof = m_requiresProof,
    };
}

} // namespace stillgate
