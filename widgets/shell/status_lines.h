#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QTime>
#include <deque>

namespace velmora {

// The lines of the status window, the oldest first. Lines of plug-ins, which begin with four blanks, stand
// out. [main]
class CStatusLines : public QAbstractListModel
{
    Q_OBJECT

  public:
    static constexpr int MOST_LINES = 10000;

    using QAbstractListModel::QAbstractListModel;

    void add(const QString& sLine);
    void clear();
    void setTimesShown(bool bShown);

    // Without the time.
    [[nodiscard]] QString line(int nLine) const;

    // What stands out in the list; empty for none.
    void setSought(const QString& sText);
    [[nodiscard]] bool isHit(int nLine) const;
    [[nodiscard]] int hitCount() const;

    // The hit that lies nStep (1 or -1) beyond a line, round the end; -1 if there is none.
    [[nodiscard]] int nextHit(int nFrom, int nStep) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int nRole) const override;

  private:
    struct CLine
    {
        QTime m_time;
        QString m_sText;
    };

    std::deque<CLine> m_lines;
    QString m_sSought;
    bool m_bTimes = false;
};

} // namespace velmora
