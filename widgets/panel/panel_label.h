#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace velmora {

// A caption of the panel. A text too long for its place is broken into lines, then set smaller, then cut with
// an ellipsis; the whole of it is then the tool tip. [main]
class CPanelLabel : public QWidget
{
    Q_OBJECT

  public:
    enum class ELook
    {
        Text,
        Quiet,
        Strong,
        Display // on a display's colours
    };

    explicit CPanelLabel(QWidget* pParent = nullptr);

    void setText(const QString& sText);
    [[nodiscard]] const QString& text() const { return m_sText; }

    void setLook(ELook eLook);
    void setAlignment(Qt::Alignment alignment);
    void setMaxLines(int nLines);
    void setVertical(bool bVertical);   // reads from the foot to the top
    void setFontFactor(double dFactor); // of the panel's font

    // Whether the place is too small for the text.
    [[nodiscard]] bool isCut() const { return m_bCut; }

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void changeEvent(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    void breakLines();
    void breakLinesIn(const QFont& drawn);
    [[nodiscard]] QSize lineSpace() const;
    [[nodiscard]] QFont drawnFont() const;
    [[nodiscard]] QColor colour() const;

    QString m_sText;
    QStringList m_lines;
    ELook m_eLook = ELook::Text;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
    double m_dFactor = 1.0;
    double m_dShrink = 1.0;
    int m_nMaxLines = 1;
    bool m_bVertical = false;
    bool m_bCut = false;
};

} // namespace velmora
