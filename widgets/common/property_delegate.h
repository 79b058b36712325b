#pragma once

#include <QStyledItemDelegate>

namespace velmora {

// What a cell of the property table carries beside its text.
enum EPropertyRole
{
    PROPERTY_KIND = Qt::UserRole, // EPropertyKind, of the right cell
    PROPERTY_CHOICES,             // QStringList, of the right cell
    PROPERTY_ERROR,               // QString, of the right cell
    PROPERTY_MARKED               // bool, of the left cell
};

// Draws the cells of the property table and makes their editors: a line, or a list that drops down. [main]
class CPropertyDelegate : public QStyledItemDelegate
{
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* pPainter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* pParent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* pEditor, const QModelIndex& index) const override;
    void setModelData(QWidget* pEditor, QAbstractItemModel* pModel, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

    // The text that an editor of ours shows.
    [[nodiscard]] static QString editorText(const QWidget& editor);
    static void showText(QWidget& editor, const QString& sText);

  signals:
    void typing(const QModelIndex& index, const QString& sText);

  private:
    [[nodiscard]] static int lineHeight(const QStyleOptionViewItem& option);
    [[nodiscard]] static QRect errorRect(const QStyleOptionViewItem& option, const QString& sError);
};

} // namespace velmora
