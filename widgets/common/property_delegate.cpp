#include "widgets/common/property_delegate.h"

#include "widgets/common/property_grid.h"
#include "widgets/common/theme.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPersistentModelIndex>

namespace velmora {

namespace {

constexpr int INDENT = 6;  // of a text from its cell's edge
constexpr int PADDING = 5; // above and below a text
constexpr int ARROW_ROOM = 18;

EPropertyKind kindOf(const QModelIndex& index)
{
    return static_cast<EPropertyKind>(index.data(PROPERTY_KIND).toInt());
}

bool isValue(const QModelIndex& index)
{
    return index.column() == 1;
}

void drawArrow(QPainter& painter, const QRect& cell, const QColor& colour)
{
    const QPointF middle(cell.right() - ARROW_ROOM / 2.0, cell.center().y() + 1.0);
    QPainterPath path(middle + QPointF(-4.0, -2.0));
    path.lineTo(middle + QPointF(0.0, 2.0));
    path.lineTo(middle + QPointF(4.0, -2.0));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.5));
    painter.drawPath(path);
}

} // namespace

int CPropertyDelegate::lineHeight(const QStyleOptionViewItem& option)
{
    return option.fontMetrics.height() + 2 * PADDING;
}

QRect CPropertyDelegate::errorRect(const QStyleOptionViewItem& option, const QString& sError)
{
    const int nWidth = std::max(40, option.rect.width() - 2 * INDENT);
    const QFontMetrics metrics(CTheme::font(0.9));
    const QRect text = metrics.boundingRect(0, 0, nWidth, 10000, Qt::TextWordWrap, sError);
    return {option.rect.left() + INDENT, option.rect.top() + lineHeight(option), nWidth, text.height()};
}

void CPropertyDelegate::paint(QPainter* pPainter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const CThemeColours& colours = CTheme::instance().colours();
    const bool bEnabled = option.state.testFlag(QStyle::State_Enabled);
    const bool bSelected = option.state.testFlag(QStyle::State_Selected) && bEnabled;
    const QString sRowError = index.siblingAtColumn(1).data(PROPERTY_ERROR).toString();
    const QString sError = isValue(index) ? sRowError : QString();
    const bool bChoice = isValue(index) && kindOf(index) == EPropertyKind::Choice;
    const bool bFixed = !isValue(index) || kindOf(index) == EPropertyKind::ReadOnly;

    QColor text = isValue(index) && bFixed ? colours.m_quietText : colours.m_text;
    if (index.data(PROPERTY_MARKED).toBool())
        text = colours.m_accent;
    if (bSelected)
        text = colours.m_accentText;
    if (!bEnabled)
        text = option.palette.color(QPalette::Disabled, QPalette::Text);

    pPainter->save();
    QRect line = option.rect;
    line.setHeight(sRowError.isEmpty() ? line.height() : lineHeight(option));
    pPainter->fillRect(option.rect, bFixed ? colours.m_panel : colours.m_well);
    if (bSelected)
        pPainter->fillRect(line, colours.m_accent);
    pPainter->setPen(text);
    pPainter->setFont(option.font);
    const QRect room = line.adjusted(INDENT, 0, bChoice ? -ARROW_ROOM : -INDENT, 0);
    pPainter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                       option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, room.width()));
    if (!sError.isEmpty()) {
        pPainter->setPen(colours.m_error);
        pPainter->setFont(CTheme::font(0.9));
        pPainter->drawText(errorRect(option, sError), Qt::TextWordWrap, sError);
        pPainter->fillRect(QRect(option.rect.left(), line.top(), 3, option.rect.height()), colours.m_error);
    }
    if (bChoice)
        drawArrow(*pPainter, line, text);
    pPainter->restore();
}

QSize CPropertyDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int nWidth = option.fontMetrics.horizontalAdvance(index.data().toString()) + 2 * INDENT + 4;
    const QString sError = index.data(PROPERTY_ERROR).toString();
    int nHeight = lineHeight(option);
    if (!sError.isEmpty())
        nHeight += errorRect(option, sError).height() + PADDING;
    return {nWidth, nHeight};
}

QWidget* CPropertyDelegate::createEditor(QWidget* pParent, const QStyleOptionViewItem&,
                                         const QModelIndex& index) const
{
    auto* pSelf = const_cast<CPropertyDelegate*>(this);
    QWidget* pEditor = nullptr;
    if (kindOf(index) == EPropertyKind::Choice) {
        auto* pBox = new QComboBox(pParent);
        pBox->addItems(index.data(PROPERTY_CHOICES).toStringList());
        connect(pBox, &QComboBox::activated, pSelf, [pSelf, pBox] {
            emit pSelf->commitData(pBox);
            emit pSelf->closeEditor(pBox);
        });
        pEditor = pBox;
    } else {
        auto* pLine = new QLineEdit(pParent);
        pLine->setFrame(false);
        pLine->setTextMargins(INDENT - 2, 0, INDENT - 2, 0);
        connect(pLine, &QLineEdit::textEdited, pSelf,
                [pSelf, cell = QPersistentModelIndex(index)](const QString& sText) {
                    emit pSelf->typing(cell, sText);
                });
        pEditor = pLine;
    }
    pEditor->setAutoFillBackground(true);
    pEditor->setAccessibleName(index.siblingAtColumn(0).data().toString());
    pEditor->setAccessibleDescription(index.data(PROPERTY_ERROR).toString());
    return pEditor;
}

void CPropertyDelegate::setEditorData(QWidget* pEditor, const QModelIndex& index) const
{
    showText(*pEditor, index.data(Qt::EditRole).toString());
}

void CPropertyDelegate::setModelData(QWidget* pEditor, QAbstractItemModel* pModel,
                                     const QModelIndex& index) const
{
    const QString sText = editorText(*pEditor);
    if (sText != index.data(Qt::EditRole).toString())
        pModel->setData(index, sText);
}

void CPropertyDelegate::updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                                             const QModelIndex& index) const
{
    QRect place = option.rect;
    if (!index.data(PROPERTY_ERROR).toString().isEmpty())
        place.setHeight(lineHeight(option));
    pEditor->setGeometry(place);
}

QString CPropertyDelegate::editorText(const QWidget& editor)
{
    if (const auto* pBox = qobject_cast<const QComboBox*>(&editor))
        return pBox->currentText();
    const auto* pLine = qobject_cast<const QLineEdit*>(&editor);
    return pLine ? pLine->text() : QString();
}

void CPropertyDelegate::showText(QWidget& editor, const QString& sText)
{
    if (auto* pBox = qobject_cast<QComboBox*>(&editor))
        pBox->setCurrentText(sText);
    else if (auto* pLine = qobject_cast<QLineEdit*>(&editor); pLine && pLine->text() != sText)
        pLine->setText(sText);
}

} // namespace velmora
