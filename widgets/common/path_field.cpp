#include "widgets/common/path_field.h"

#include "base/user_dialogs.h"
#include "widgets/common/qt_text.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace velmora {

CPathField::CPathField(IUserDialogs& dialogs, QWidget* pParent)
    : QWidget(pParent), m_dialogs(dialogs), m_pLine(new QLineEdit(this)),
      m_pButton(new QPushButton(tr("Browse"), this))
{
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pLine, 1);
    pLayout->addWidget(m_pButton);
    m_pButton->setAutoDefault(false);
    m_pLine->setMinimumWidth(m_pLine->fontMetrics().averageCharWidth() * 36);
    setFocusProxy(m_pLine);
    setName(tr("Path"));
    connect(m_pLine, &QLineEdit::textEdited, this, &CPathField::edited);
    connect(m_pLine, &QLineEdit::textChanged, m_pLine, &QWidget::setToolTip);
    connect(m_pButton, &QPushButton::clicked, this, &CPathField::browse);
}

void CPathField::useFolder(const QString& sTitle)
{
    m_bFile = false;
    m_sTitle = sTitle;
}

void CPathField::useFile(const QString& sFilter)
{
    m_bFile = true;
    m_sFilter = sFilter;
}

void CPathField::setName(const QString& sName)
{
    m_pLine->setAccessibleName(sName);
    m_pButton->setAccessibleName(tr("Browse for %1").arg(sName));
}

QString CPathField::text() const
{
    return m_pLine->text();
}

void CPathField::setText(const QString& sPath)
{
    m_pLine->setText(sPath);
}

void CPathField::browse()
{
    const std::filesystem::path now = pathOf(m_pLine->text());
    const auto chosen = m_bFile ? m_dialogs.chooseOpenFile(utf8(m_sFilter), now.parent_path())
                                : m_dialogs.chooseFolder(utf8(m_sTitle), now);
    if (!chosen)
        return;
    m_pLine->setText(pathText(*chosen));
    emit edited(m_pLine->text());
}

} // namespace velmora
