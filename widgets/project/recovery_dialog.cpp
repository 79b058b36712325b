#include "widgets/project/recovery_dialog.h"

#include "document/autosave.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <chrono>

namespace velmora {

namespace {

QString timeText(std::filesystem::file_time_type time)
{
    const auto system = std::chrono::file_clock::to_sys(time);
    const auto nSeconds = std::chrono::duration_cast<std::chrono::seconds>(system.time_since_epoch()).count();
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(nSeconds), QLocale::ShortFormat);
}

} // namespace

CRecoveryDialog::CRecoveryDialog(const CRecovery& recovery, QWidget* pParent) : QDialog(pParent)
{
    setWindowTitle("Recover a Project");
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::SPACING);

    auto* pText = new QLabel(
        QString("Velmora did not end as it should while the project %1 was open. What was not saved then was "
                "kept on %2. It holds these changes that the saved project has not:")
            .arg(pathText(recovery.m_project.stem()), timeText(recovery.m_time)));
    pText->setWordWrap(true);
    pLayout->addWidget(pText);

    auto* pList = new QListWidget;
    pList->setAccessibleName("Changes that were not saved");
    pList->setWordWrap(true);
    for (const std::string& sSentence : recovery.m_differences)
        pList->addItem(qs(sSentence));
    pList->setSpacing(1);
    pText->setBuddy(pList);
    pLayout->addWidget(pList);

    auto* pHint =
        new QLabel("Whichever of the two states you take, the other one goes into the project's history. "
                   "If you decide later, both stay as they are and the project stays closed.");
    pHint->setWordWrap(true);
    pLayout->addWidget(pHint);

    auto* pButtons = new QDialogButtonBox;
    const struct
    {
        const char* m_pText;
        QDialogButtonBox::ButtonRole m_eRole;
        ERecoveryAnswer m_eAnswer;
    } buttons[] = {
        {"&Recover", QDialogButtonBox::AcceptRole, ERecoveryAnswer::Recover},
        {"&Keep the Saved Project", QDialogButtonBox::DestructiveRole, ERecoveryAnswer::KeepSaved},
        {"Decide &Later", QDialogButtonBox::RejectRole, ERecoveryAnswer::Later},
    };
    for (const auto& button : buttons) {
        QPushButton* pButton = pButtons->addButton(button.m_pText, button.m_eRole);
        connect(pButton, &QPushButton::clicked, this, [this, eAnswer = button.m_eAnswer] {
            m_eAnswer = eAnswer;
            done(eAnswer == ERecoveryAnswer::Later ? Rejected : Accepted);
        });
        pButton->setDefault(button.m_eAnswer == ERecoveryAnswer::Recover);
    }
    pLayout->addWidget(pButtons);
    pButtons->buttons().constFirst()->setFocus();
    resize(560, 380);
}

ERecoveryAnswer CRecoveryDialog::ask()
{
    exec();
    return m_eAnswer;
}

} // namespace velmora
