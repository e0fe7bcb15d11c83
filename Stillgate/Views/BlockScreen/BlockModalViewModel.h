#pragma once

#include "App/Windows.h"

#include <QObject>
#include <QUrl>
#include <qqmlregistration.h>

#include <filesystem>

namespace stillgate
{

/// What a block screen shows. It is made for one block, and doesn't follow what changes later.
class BlockModalViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its window")

    Q_PROPERTY(QUrl illustration READ illustration CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString subtitle READ subtitle CONSTANT)
    Q_PROPERTY(QString sessionName READ sessionName CONSTANT)
    Q_PROPERTY(bool hasBudget READ hasBudget CONSTANT)
    Q_PROPERTY(double budgetShare READ budgetShare CONSTANT)
    Q_PROPERTY(QString budgetText READ budgetText CONSTANT)
    Q_PROPERTY(QString primaryTitle READ primaryTitle CONSTANT)
    Q_PROPERTY(bool canOpenTasks READ canOpenTasks CONSTANT)
    Q_PROPERTY(bool canContinue READ canContinue CONSTANT)
    Q_PROPERTY(QString notice READ notice CONSTANT)
    Q_PROPERTY(bool isNoticeOfGuardian READ isNoticeOfGuardian CONSTANT)
    Q_PROPERTY(bool showConfirm READ showConfirm NOTIFY showConfirmChanged)

public:
    /// `hour` of the day, 0 to 23, in which the screen comes up; `bundle`: where the illustrations are.
    BlockModalViewModel(BlockModal modal, BlockModalActions actions, int hour, const std::filesystem::path& bundle);

    /// Empty if there is no such picture: then `symbol` stands for it.
    [[nodiscard]] QUrl illustration() const { return m_illustration; }

    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;

    /// Empty if there is none.
    [[nodiscard]] QString sessionName() const;

    [[nodiscard]] bool hasBudget() const;
    [[nodiscard]] double budgetShare() const; ///< used up, of 1
    [[nodiscard]] QString budgetText() const;
    [[nodiscard]] QString primaryTitle() const;

    [[nodiscard]] bool canOpenTasks() const { return m_actions.onOpenTasks != nullptr; }

    [[nodiscard]] bool canContinue() const;

    /// What going on would mean.
    [[nodiscard]] QString notice() const;

    [[nodiscard]] bool isNoticeOfGuardian() const { return m_modal.guardianMessage.has_value(); }

    /// Whether the user is asked once more.
    [[nodiscard]] bool showConfirm() const { return m_showConfirm; }

    Q_INVOKABLE void dismiss() { m_actions.onDismiss(); }

    Q_INVOKABLE void openTasks();

    Q_INVOKABLE void askToContinue() { setShowConfirm(canContinue()); }

    Q_INVOKABLE void cancelConfirm() { setShowConfirm(false); }

    Q_INVOKABLE void continueAnyway();

Q_SIGNALS:
    void showConfirmChanged();

private:
    void setShowConfirm(bool show);

    BlockModal m_modal;
    BlockModalActions m_actions;
    QUrl m_illustration;
    bool m_showConfirm = false;
};

} // namespace stillgate
