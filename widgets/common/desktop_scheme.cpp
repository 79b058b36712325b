#include "widgets/common/desktop_scheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>

namespace velmora {

namespace {

const QString SERVICE = QStringLiteral("org.freedesktop.portal.Desktop");
const QString PATH = QStringLiteral("/org/freedesktop/portal/desktop");
const QString INTERFACE = QStringLiteral("org.freedesktop.portal.Settings");
const QString GROUP = QStringLiteral("org.freedesktop.appearance");
const QString KEY = QStringLiteral("color-scheme");

constexpr unsigned PREFERS_DARK = 1;
constexpr unsigned PREFERS_LIGHT = 2;

// To look for a bus where none is would start one.
bool hasBus()
{
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

} // namespace

void CDesktopScheme::follow()
{
    if (m_bFollowing || !hasBus())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    m_bFollowing = true;
    qRegisterMetaType<QDBusVariant>(); // the connection finds the slot's types by name
    bus.connect(SERVICE, PATH, INTERFACE, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(SERVICE, PATH, INTERFACE, QStringLiteral("Read"));
    question << GROUP << KEY;
    auto* pWatcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(pWatcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* pDone) {
        const QDBusPendingReply<QDBusVariant> reply = *pDone;
        if (!reply.isError())
            take(reply.value().variant());
        pDone->deleteLater();
    });
}

void CDesktopScheme::settingChanged(const QString& sGroup, const QString& sKey, const QDBusVariant& value)
{
    if (sGroup == GROUP && sKey == KEY)
        take(value.variant());
}

// The answer to a question is wrapped once more than a change is.
void CDesktopScheme::take(const QVariant& value)
{
    const QVariant inner = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    const unsigned uChoice = inner.toUInt();
    std::optional<bool> bDark;
    if (uChoice == PREFERS_DARK || uChoice == PREFERS_LIGHT)
        bDark = uChoice == PREFERS_DARK;
    if (bDark == m_bDark)
        return;
    m_bDark = bDark;
    emit changed();
}

} // namespace velmora
