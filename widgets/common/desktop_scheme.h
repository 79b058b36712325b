#pragma once

#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace velmora {

// The colour scheme that the user has chosen for the desktop, as its settings portal tells it: for desktops
// that do not give their palette to other toolkits' programs. Asked for and followed in the background.
// [main]
class CDesktopScheme : public QObject
{
    Q_OBJECT

  public:
    using QObject::QObject;

    // Begins to ask. Nothing happens on a desktop without a message bus or a portal.
    void follow();

    // True for dark, false for light; none as long as the desktop has not told, or tells of no preference.
    [[nodiscard]] std::optional<bool> isDark() const { return m_bDark; }

  signals:
    void changed();

  private slots:
    void settingChanged(const QString& sGroup, const QString& sKey, const QDBusVariant& value);

  private:
    void take(const QVariant& value);

    std::optional<bool> m_bDark;
    bool m_bFollowing = false;
};

} // namespace velmora
