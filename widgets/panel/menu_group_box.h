#pragma once

#include <QGroupBox>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class QLineEdit;
class QListWidget;

namespace velmora {

class IUserDialogs;

// The part of Slider Properties that keeps the menu groups of the alpha wheel's items. The selected name is
// the group of the edited control; the first entry is none. [main]
class CMenuGroupBox : public QGroupBox
{
    Q_OBJECT

  public:
    // Gives all other controls of a group another name, or no group for an empty one. False: nothing was
    // changed.
    using Change = std::function<bool(const std::string& sFrom, const std::string& sTo)>;

    explicit CMenuGroupBox(IUserDialogs& dialogs, QWidget* pParent = nullptr);

    void setChange(Change change) { m_change = std::move(change); }

    // Silent. A group that is not among the names is added to them.
    void setGroups(const std::vector<std::string>& groups);
    void setGroup(std::string_view sGroup);
    [[nodiscard]] std::vector<std::string> groups() const;

    // Empty for none.
    [[nodiscard]] std::string group() const;

  signals:
    // The edited control's group is another one, or bears another name.
    void groupChanged();

  protected:
    void keyPressEvent(QKeyEvent* pEvent) override;

  private:
    void addMenu();
    void deleteMenu();
    void editMenu();
    [[nodiscard]] bool refuseName(const QString& sName);
    [[nodiscard]] bool hasSelection();
    [[nodiscard]] int rowOf(const QString& sName) const;

    IUserDialogs& m_dialogs;
    Change m_change;
    QListWidget* m_pList;
    QLineEdit* m_pNewName;
};

} // namespace velmora
