#include "widgets/shell/recent_projects.h"

#include "widgets/common/qt_text.h"

#include <QFileInfo>
#include <QSettings>

namespace velmora {

namespace {

constexpr auto SECTION = "Recent File List";

QString keyOf(qsizetype nNumber)
{
    return QStringLiteral("File%1").arg(nNumber);
}

QString spelled(const std::filesystem::path& file)
{
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(file, error);
    return pathText((error ? file : full).lexically_normal());
}

} // namespace

CRecentProjects::CRecentProjects(QSettings& profile) : m_profile(profile)
{
    m_profile.beginGroup(QString::fromLatin1(SECTION));
    for (int nNumber = 1; nNumber <= MOST; ++nNumber) {
        const QString sFile = m_profile.value(keyOf(nNumber)).toString();
        if (QFileInfo(sFile).isAbsolute() && !m_files.contains(sFile))
            m_files.append(sFile);
    }
    m_profile.endGroup();
}

void CRecentProjects::add(const std::filesystem::path& file)
{
    const QString sFile = spelled(file);
    if (!m_files.isEmpty() && m_files.first() == sFile)
        return;
    m_files.removeAll(sFile);
    m_files.prepend(sFile);
    m_files = m_files.mid(0, MOST);
    save();
}

void CRecentProjects::remove(const std::filesystem::path& file)
{
    if (m_files.removeAll(spelled(file)) > 0)
        save();
}

void CRecentProjects::clear()
{
    m_files.clear();
    save();
}

QString CRecentProjects::menuText(int nNumber) const
{
    const QFileInfo info(m_files.value(nNumber - 1));
    QString sText = info.completeBaseName() + QStringLiteral("  -  ") + info.path();
    return QStringLiteral("&%1  ").arg(nNumber) + sText.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

void CRecentProjects::save()
{
    m_profile.beginGroup(QString::fromLatin1(SECTION));
    m_profile.remove(QString());
    for (qsizetype i = 0; i < m_files.size(); ++i)
        m_profile.setValue(keyOf(i + 1), m_files[i]);
    m_profile.endGroup();
    m_profile.sync();
}

} // namespace velmora
