#include "widgets/project/request_fields.h"

#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>

namespace velmora {

CRequestFields::CRequestFields(CNewProjectRequest& request, const CProjectEnvironment& environment,
                               IUserDialogs& dialogs, QObject* pParent)
    : QObject(pParent), m_request(request), m_environment(environment), m_dialogs(dialogs)
{
}

QCheckBox* CRequestFields::addFlag(QBoxLayout& layout, const QString& sText, flag pFlag, checkFiles pCheck)
{
    auto* pBox = new QCheckBox(sText);
    pBox->setAccessibleName(spoken(sText));
    pBox->setChecked(m_request.*pFlag);
    layout.addWidget(pBox);
    connect(pBox, &QCheckBox::toggled, this, [this, pBox, pFlag, pCheck](bool bOn) {
        if (bOn && pCheck && !pCheck(m_environment, m_dialogs)) {
            pBox->setChecked(false);
            return;
        }
        m_request.*pFlag = bOn;
        emit edited();
    });
    return pBox;
}

QLineEdit* CRequestFields::addText(QFormLayout& layout, const QString& sLabel, text pText)
{
    auto* pEdit = new QLineEdit(qs(m_request.*pText));
    pEdit->setAccessibleName(spoken(sLabel));
    layout.addRow(sLabel, pEdit);
    connect(pEdit, &QLineEdit::textEdited, this, [this, pText](const QString& sText) {
        m_request.*pText = utf8(sText);
        emit edited();
    });
    return pEdit;
}

QLineEdit* CRequestFields::addReadOnly(QFormLayout& layout, const QString& sLabel)
{
    auto* pLine = new QLineEdit;
    pLine->setAccessibleName(spoken(sLabel));
    layout.addRow(sLabel, pLine);
    lock(*pLine);
    return pLine;
}

void CRequestFields::lock(QLineEdit& line)
{
    const auto showLocked = [&line] {
        QPalette own = line.palette();
        own.setColor(QPalette::Base, CTheme::instance().colours().m_window);
        line.setPalette(own);
    };
    line.setReadOnly(true);
    showLocked();
    connect(&CTheme::instance(), &CTheme::changed, &line, showLocked);
}

void CRequestFields::dress(QFormLayout& layout)
{
    layout.setSpacing(CTheme::SPACING);
    layout.setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout.setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
}

QString CRequestFields::spoken(QString sLabel)
{
    return sLabel.remove(QLatin1Char('&')).remove(QLatin1Char(':')).trimmed();
}

} // namespace velmora
