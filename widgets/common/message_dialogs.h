#pragma once

#include "base/user_dialogs.h"

#include <QMap>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>

namespace velmora {

// The engine's messages, questions and choosers as modal boxes titled "Velmora", above the window that is
// active. Texts stand as they are given: no markup, line ends and tabs kept. [main], note(): [any but audio]
class CMessageDialogs : public QObject, public IUserDialogs
{
    Q_OBJECT

  public:
    explicit CMessageDialogs(QObject* pParent = nullptr);

    // Boxes stand above this window when none of the program's is active.
    void setMainWindow(QWidget* pWindow);

    void showMessage(std::string_view sText) override;
    [[nodiscard]] bool askYesNo(std::string_view sText) override;
    [[nodiscard]] bool askOKCancel(std::string_view sText) override;
    [[nodiscard]] std::optional<std::filesystem::path>
    chooseSaveFile(std::string_view sFilter, const std::filesystem::path& suggestedName) override;
    [[nodiscard]] std::optional<std::filesystem::path>
    chooseOpenFile(std::string_view sFilter, const std::filesystem::path& startFolder = {}) override;
    [[nodiscard]] std::optional<std::filesystem::path>
    chooseFolder(std::string_view sTitle, const std::filesystem::path& startFolder) override;
    void note(std::string_view sText) override;

    // "Wave Files (*.wav)|*.wav|All (*.*)|*.*||" as Qt lists it: "Wave Files (*.wav);;All (*)".
    [[nodiscard]] static QString filterList(std::string_view sFilter);

  signals:
    // A line for the status window; emitted on the thread of this object.
    void noted(const QString& sText);

  private:
    [[nodiscard]] QWidget* activeWindow() const;
    QMessageBox::StandardButton ask(std::string_view sText, QMessageBox::Icon eIcon,
                                    QMessageBox::StandardButtons buttons);
    [[nodiscard]] QString startFolder(const QString& sKey, const std::filesystem::path& wanted) const;

    QPointer<QWidget> m_pMain;
    QMap<QString, QString> m_lastFolders; // by filter
};

} // namespace velmora
