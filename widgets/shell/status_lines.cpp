#include "widgets/shell/status_lines.h"

#include "widgets/common/theme.h"

#include <algorithm>

namespace velmora {

namespace {

const QString PLUGIN_MARK = QStringLiteral("    ");

} // namespace

void CStatusLines::add(const QString& sLine)
{
    if (rowCount() >= MOST_LINES) {
        beginRemoveRows({}, 0, 0);
        m_lines.pop_front();
        endRemoveRows();
    }
    beginInsertRows({}, rowCount(), rowCount());
    m_lines.push_back({QTime::currentTime(), sLine});
    endInsertRows();
}

void CStatusLines::clear()
{
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

void CStatusLines::setTimesShown(bool bShown)
{
    emit layoutAboutToBeChanged();
    m_bTimes = bShown;
    emit layoutChanged();
}

QString CStatusLines::line(int nLine) const
{
    return nLine >= 0 && nLine < rowCount() ? m_lines[static_cast<std::size_t>(nLine)].m_sText : QString();
}

void CStatusLines::setSought(const QString& sText)
{
    m_sSought = sText;
    if (rowCount() > 0)
        emit dataChanged(index(0), index(rowCount() - 1), {Qt::BackgroundRole, Qt::ForegroundRole});
}

bool CStatusLines::isHit(int nLine) const
{
    return !m_sSought.isEmpty() && line(nLine).contains(m_sSought, Qt::CaseInsensitive);
}

int CStatusLines::hitCount() const
{
    int nCount = 0;
    for (int n = 0; n < rowCount(); ++n)
        nCount += isHit(n) ? 1 : 0;
    return nCount;
}

int CStatusLines::nextHit(int nFrom, int nStep) const
{
    const int nRows = rowCount();
    for (int n = 1; n <= nRows; ++n) {
        const int nAt = (nFrom + nStep * n + 2 * nRows) % nRows;
        if (isHit(nAt))
            return nAt;
    }
    return -1;
}

int CStatusLines::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant CStatusLines::data(const QModelIndex& index, int nRole) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const CLine& line = m_lines[static_cast<std::size_t>(index.row())];
    const CThemeColours& colours = CTheme::instance().colours();
    const bool bPlugIn = line.m_sText.startsWith(PLUGIN_MARK);
    switch (nRole) {
    case Qt::DisplayRole:
        return m_bTimes ? line.m_time.toString(QStringLiteral("HH:mm:ss.zzz  ")) + line.m_sText
                        : line.m_sText;
    case Qt::AccessibleDescriptionRole:
        return bPlugIn ? tr("from the plug-in, at %1").arg(line.m_time.toString()) : line.m_time.toString();
    case Qt::ForegroundRole:
        if (isHit(index.row()))
            return colours.m_accent;
        return bPlugIn ? colours.m_live : colours.m_text;
    case Qt::BackgroundRole:
        return isHit(index.row()) ? QVariant(colours.m_raised) : QVariant();
    default:
        return {};
    }
}

} // namespace velmora
