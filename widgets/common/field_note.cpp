#include "widgets/common/field_note.h"

#include "widgets/common/theme.h"

#include <QResizeEvent>

namespace velmora {

CFieldNote::CFieldNote(QWidget* pField, QWidget* pParent) : QLabel(pParent), m_pField(pField)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    hide();
    connect(&CTheme::instance(), &CTheme::changed, this, &CFieldNote::applyColour);
}

void CFieldNote::showError(const QString& sText)
{
    showText(sText, true);
}

void CFieldNote::showHint(const QString& sText)
{
    showText(sText, false);
}

void CFieldNote::showText(const QString& sText, bool bError)
{
    m_bError = bError && !sText.isEmpty();
    setText(sText);
    if (m_pField)
        m_pField->setAccessibleDescription(sText);
    applyColour();
    makeRoom();
    setVisible(!sText.isEmpty());
}

void CFieldNote::applyColour()
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPalette own = palette();
    own.setColor(QPalette::WindowText, m_bError ? colours.m_error : colours.m_quietText);
    setPalette(own);
}

// Forms and windows do not reckon with how a text wraps.
void CFieldNote::makeRoom()
{
    const QRect column(0, 0, width(), QWIDGETSIZE_MAX);
    setFixedHeight(fontMetrics().boundingRect(column, Qt::TextWordWrap, text()).height());
}

void CFieldNote::resizeEvent(QResizeEvent* pEvent)
{
    QLabel::resizeEvent(pEvent);
    makeRoom();
}

} // namespace velmora
