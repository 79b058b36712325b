#pragma once

#include "widgets/common/theme.h"

#include <QColor>
#include <QString>
#include <QWidget>

namespace velmora {

// How much a control of the panel stands out: a free slot is quiet, an assigned one shows the accent, and
// with a plug-in loaded the live colour.
enum class ESlotRole
{
    Empty,
    Assigned,
    Live
};

// What is lit, pointed at or filled in that look, and text written on it.
[[nodiscard]] QColor roleColour(ESlotRole eRole);
[[nodiscard]] QColor roleTextColour(ESlotRole eRole);

// Text beside it, on window or panel.
[[nodiscard]] QColor captionColour(ESlotRole eRole);

// Tells assistive programs that a value has changed; costs next to nothing while there are none.
void announceValue(QWidget* pWidget);

// The look that all controls of the panel share, over the Qt widget that a control is made of. A control is
// Assigned and active until told otherwise. [main]
template <class TWidget>
class CSlotControl : public TWidget
{
  public:
    explicit CSlotControl(QWidget* pParent) : TWidget(pParent)
    {
        QObject::connect(&CTheme::instance(), &CTheme::changed, this, [this] { lookChanged(); });
    }

    void setRole(ESlotRole eRole)
    {
        if (m_eRole == eRole)
            return;
        m_eRole = eRole;
        lookChanged();
    }
    [[nodiscard]] ESlotRole role() const { return m_eRole; }

    // An inactive control looks empty whatever its role, and hands do not move it.
    void setActive(bool bActive)
    {
        if (m_bActive == bActive)
            return;
        m_bActive = bActive;
        lookChanged();
    }
    [[nodiscard]] bool isActive() const { return m_bActive; }

    // What is to be drawn.
    [[nodiscard]] ESlotRole look() const { return m_bActive ? m_eRole : ESlotRole::Empty; }

    // The value as it is spoken: with its unit, such as "440.00 Hz".
    void setValueText(const QString& sText)
    {
        if (m_sValueText == sText)
            return;
        m_sValueText = sText;
        announceValue(this);
    }
    [[nodiscard]] const QString& valueText() const { return m_sValueText; }

  protected:
    [[nodiscard]] bool isMovable() const { return look() != ESlotRole::Empty && this->isEnabled(); }
    virtual void lookChanged() { this->update(); }

  private:
    ESlotRole m_eRole = ESlotRole::Assigned;
    bool m_bActive = true;
    QString m_sValueText;
};

} // namespace velmora
