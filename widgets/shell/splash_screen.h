#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <QWidget>

namespace velmora {

// The start picture with its lines. It stays for at least 4000 ms, or until a click or a key; a message or a
// question is not covered by it. [main]
class CSplashScreen : public QWidget
{
    Q_OBJECT

  public:
    static constexpr int LEAST_MS = 4000;

    explicit CSplashScreen(QWidget* pParent = nullptr);

    // Shows the picture in the middle of the screen and draws it at once; the time begins.
    void begin(int nLeastMs = LEAST_MS);

    // Adds a line below those shown and draws it at once.
    void addLine(const QString& sLine);

    // Waits, with the windows served, until the least time is over or the user has had enough, and closes.
    void finish();

    [[nodiscard]] bool isEnded() const { return m_bEnded; }

  signals:
    void ended();

  protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

  private:
    void drawNow();
    void endNow();

    QStringList m_lines;
    QElapsedTimer m_shown;
    int m_nLeastMs = LEAST_MS;
    bool m_bEnded = false;
};

} // namespace velmora
