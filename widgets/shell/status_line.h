#pragma once

#include <QStatusBar>

class QLabel;

namespace velmora {

class CTonboxDoc;

// The status bar: passing lines at the left, then the transport's state in words, the device, the rate, the
// load in per cent, gaps in the audio, and the plug-in. Figures of the audio are those since the stream was
// opened. [main]
class CStatusLine : public QStatusBar
{
    Q_OBJECT

  public:
    CStatusLine(CTonboxDoc& document, QWidget* pParent);

    // Reads everything from the document.
    void refresh();

    // How long a passing line stays, in ms.
    static constexpr int NOTE_TIME = 8000;

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    QLabel* addField(const QString& sName, int nCharacters);
    void showGaps();
    void showLoad();

    CTonboxDoc& m_document;
    QLabel* m_pState;
    QLabel* m_pDevice;
    QLabel* m_pRate;
    QLabel* m_pLoad;
    QLabel* m_pGaps;
    QLabel* m_pPlugIn;
};

} // namespace velmora
