#include "widgets/common/accessible_instrument.h"

#include <QVariant>
#include <QWidget>
#include <algorithm>

namespace velmora {

namespace {

class CInstrumentInterface : public QAccessibleWidget, public QAccessibleValueInterface
{
  public:
    CInstrumentInterface(QWidget* pWidget, IAccessibleInstrument& instrument)
        : QAccessibleWidget(pWidget, instrument.accessibleRole()), m_instrument(instrument)
    {
    }

    [[nodiscard]] QString text(QAccessible::Text eText) const override
    {
        if (eText == QAccessible::Value)
            return m_instrument.accessibleValueText();
        const QString sText = QAccessibleWidget::text(eText);
        return eText == QAccessible::Name && sText.isEmpty() ? m_instrument.accessibleFallbackName() : sText;
    }

    void* interface_cast(QAccessible::InterfaceType eType) override
    {
        if (eType == QAccessible::ValueInterface && m_instrument.accessibleRange())
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(eType);
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State result = QAccessibleWidget::state();
        result.hasPopup = m_instrument.hasAccessibleMenu();
        return result;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (m_instrument.hasAccessibleMenu() && widget()->isEnabled())
            names.prepend(showMenuAction());
        return names;
    }

    void doAction(const QString& sAction) override
    {
        if (sAction == showMenuAction() && m_instrument.hasAccessibleMenu() && widget()->isEnabled())
            m_instrument.showAccessibleMenu();
        else
            QAccessibleWidget::doAction(sAction);
    }

    [[nodiscard]] QVariant currentValue() const override { return range().m_dValue; }
    [[nodiscard]] QVariant minimumValue() const override { return range().m_dLowest; }
    [[nodiscard]] QVariant maximumValue() const override { return range().m_dHighest; }
    [[nodiscard]] QVariant minimumStepSize() const override { return range().m_dStep; }

    void setCurrentValue(const QVariant& value) override
    {
        bool bNumber = false;
        const double dValue = value.toDouble(&bNumber);
        if (bNumber)
            m_instrument.setAccessibleValue(std::clamp(dValue, range().m_dLowest, range().m_dHighest));
    }

  private:
    [[nodiscard]] IAccessibleInstrument::CRange range() const
    {
        return m_instrument.accessibleRange().value_or(IAccessibleInstrument::CRange{});
    }

    IAccessibleInstrument& m_instrument;
};

QAccessibleInterface* interfaceOf(const QString& /*sClass*/, QObject* pObject)
{
    auto* pInstrument = dynamic_cast<IAccessibleInstrument*>(pObject);
    auto* pWidget = qobject_cast<QWidget*>(pObject);
    return pInstrument && pWidget ? new CInstrumentInterface(pWidget, *pInstrument) : nullptr;
}

} // namespace

void installAccessibleInstruments()
{
    QAccessible::installFactory(interfaceOf); // a known one is not added again
}

} // namespace velmora
