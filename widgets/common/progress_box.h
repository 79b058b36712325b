#pragma once

#include "base/patience.h"
#include "base/progress.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>

class QEventLoop;

namespace velmora {

class CProgressPanel;

// How far a long command is, with "Cancel". The box appears above its window when the command has taken 300
// ms, keeps the program drawn and answering, and goes away when the command has returned. Can be used for one
// command after the other. All calls on the main thread.
class CProgressBox : public QObject, public IProgress, public IPatience
{
    Q_OBJECT

  public:
    static constexpr int DELAY_MS = 300;

    // sText says what is being done.
    explicit CProgressBox(const QString& sText, QWidget* pWindow = nullptr);
    ~CProgressBox() override;

    void setText(const QString& sText);

    // Serves the windows and answers whether to go on. A report from within one only answers.
    [[nodiscard]] bool report(double fDone) override;

    // Serves the windows for the time given; the bar shows that something goes on without saying how far.
    [[nodiscard]] bool wait(std::chrono::milliseconds duration, std::string_view sFor) override;

    // Of this command, or of the last one.
    [[nodiscard]] bool isCancelled() const { return m_bCancelled; }
    [[nodiscard]] bool isShown() const;

  public slots:
    void cancel();

  private:
    void begin();
    void showWhenDue();
    void end();

    QString m_sText;
    QPointer<QWidget> m_pWindow;
    QPointer<CProgressPanel> m_pPanel;
    QElapsedTimer m_since;  // of the command's first report or wait
    QElapsedTimer m_served; // since the windows were served last
    QTimer m_endTimer;      // fires when the command has given control back
    QEventLoop* m_pLoop = nullptr;
    int m_nPercent = -1; // -1: not known
    bool m_bServing = false;
    bool m_bCancelled = false;
};

} // namespace velmora
