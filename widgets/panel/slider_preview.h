#pragma once

#include "pluginconstants.h"

#include <QWidget>

class QLabel;

namespace velmora {

class CTrackBar;

// The small track bar of Slider Properties, which sets the initial value. Its bar reads 0 at the top and 256
// at the bottom; a reading of p * 256 stands for the value (hi - lo) * (1 - p), without lo. [main]
class CSliderPreview : public QWidget
{
    Q_OBJECT

  public:
    explicit CSliderPreview(QWidget* pParent = nullptr);

    // Shows limits and initial value of a record that is not enumerated.
    void setRecord(const CUICtrl& record);

    // What a thumb at 0 (bottom) to 256 (top) stands for. For an integer a whole number.
    [[nodiscard]] static float valueAt(const CUICtrl& record, int nThumb);

  signals:
    // The user has moved the thumb, 0 to 256.
    void moved(int nThumb);

  private:
    CTrackBar* m_pBar;
    QLabel* m_pHigh;
    QLabel* m_pValue;
    QLabel* m_pLow;
};

} // namespace velmora
