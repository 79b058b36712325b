#include "widgets/common/led_meter.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace velmora {
namespace {

// Shown on a form that counts how often it is painted itself.
class CForm : public QWidget
{
  public:
    CForm()
    {
        m_meter.setGeometry(20, 20, 18, 222);
        resize(300, 300);
        show();
        QTest::qWait(1);
        settle();
    }

    void settle()
    {
        QCoreApplication::processEvents();
        m_nPainted = 0;
        m_nMeterArea = m_meter.paintedArea();
    }

    // Logical pixels of the meter that a level repaints.
    qint64 repainted(float fLevel)
    {
        settle();
        m_meter.setLevel(fLevel);
        QCoreApplication::processEvents();
        return m_meter.paintedArea() - m_nMeterArea;
    }

    [[nodiscard]] QColor colourOfLED(int nLED)
    {
        return m_meter.grab().toImage().pixelColor(
            (m_meter.ledRect(nLED).center() * m_meter.devicePixelRatioF()).toPoint());
    }

    CLEDMeter m_meter{this};
    int m_nPainted = 0;

  protected:
    void paintEvent(QPaintEvent* /*pEvent*/) override { ++m_nPainted; }

  private:
    qint64 m_nMeterArea = 0;
};

TEST(CLEDMeter, RepaintsTheChangedLEDsAlone)
{
    CForm form;
    const QRectF led = form.m_meter.ledRect(0);
    const double dPitch = form.m_meter.ledRect(0).top() - form.m_meter.ledRect(1).top();
    ASSERT_EQ(led.height(), 8.0); // (222 - (21 * 2 + 2)) / 20
    struct CCase
    {
        float m_fLevel;
        int m_nLit;
        int m_nChanged;
    };
    const CCase cases[] = {{0.5F, 10, 10}, {0.54F, 10, 0}, {0.55F, 11, 1}, {0.4F, 8, 3},
                           {7.0F, 20, 12}, {1.0F, 20, 0},  {-1.0F, 0, 20}, {NAN, 0, 0}};
    for (const CCase& test : cases) {
        const double dHeight = test.m_nChanged == 0 ? 0.0 : (test.m_nChanged - 1) * dPitch + led.height();
        EXPECT_EQ(form.repainted(test.m_fLevel), static_cast<qint64>(led.width() * dHeight)) << test.m_fLevel;
        EXPECT_EQ(form.m_meter.litLEDs(), test.m_nLit) << test.m_fLevel;
        EXPECT_EQ(form.m_nPainted, 0) << "the form behind the meter";
    }
}

TEST(CLEDMeter, FillsFromTheEndThatItIsTold)
{
    for (const Qt::Orientation eOrientation : {Qt::Vertical, Qt::Horizontal}) {
        for (const bool bUpsideDown : {false, true}) {
            CForm form;
            if (eOrientation == Qt::Horizontal)
                form.m_meter.setGeometry(20, 20, 222, 18);
            form.m_meter.setOrientation(eOrientation);
            form.m_meter.setUpsideDown(bUpsideDown);
            form.m_meter.setColourScheme(5);
            form.m_meter.setLevel(0.25F);
            const QRectF first = form.m_meter.ledRect(0);
            const QRectF last = form.m_meter.ledRect(19);
            const bool bUpright = eOrientation == Qt::Vertical;
            EXPECT_EQ(bUpright ? first.top() < last.top() : first.left() > last.left(), bUpsideDown);
            EXPECT_EQ(form.colourOfLED(4), QColor(0xADD8E6));
            EXPECT_EQ(form.colourOfLED(5), QColor(0x00008B));
        }
    }
}

TEST(CLEDMeter, TheMultiColourScaleIsGreenThenYellowThenRed)
{
    CForm form;
    for (const UINT uScheme : {0U, 7U, 99U}) {
        form.m_meter.setColourScheme(uScheme);
        form.m_meter.setLevel(1.0F);
        const QColor lit[] = {form.colourOfLED(0), form.colourOfLED(14), form.colourOfLED(19)};
        EXPECT_EQ(lit[0], QColor(0x90EE90));
        EXPECT_EQ(lit[1], QColor(0xFFFF00));
        EXPECT_EQ(lit[2], QColor(0xFF0000));
        form.m_meter.setLevel(0.0F);
        for (const int nLED : {0, 14, 19})
            EXPECT_LT(form.colourOfLED(nLED).lightness(), 70) << nLED;
    }
    form.m_meter.setLevel(1.0F);
    form.m_meter.setActive(false);
    EXPECT_EQ(form.colourOfLED(0), form.colourOfLED(19));
}

TEST(CLEDMeter, ThePeakStaysAndThenSinks)
{
    CForm form;
    form.m_meter.setColourScheme(1);
    form.m_meter.setPeakHold(2);
    form.m_meter.setLevel(0.5F);
    const auto isPeak = [&](int nLED) { return form.colourOfLED(nLED) == QColor(0xFF0000); };
    for (const int nExpected : {9, 9, 8, 7}) {
        form.m_meter.setLevel(0.1F);
        EXPECT_TRUE(isPeak(nExpected)) << nExpected;
        EXPECT_FALSE(isPeak(nExpected + 1) || isPeak(nExpected - 1)) << nExpected;
    }
    const double dLED = form.m_meter.ledRect(0).width() * form.m_meter.ledRect(0).height();
    EXPECT_EQ(form.repainted(0.1F), static_cast<qint64>(2 * dLED)); // the old peak and the new one
}

TEST(CLEDMeter, ATinyMeterStillShowsItsLevel)
{
    CForm form;
    form.m_meter.setGeometry(0, 0, 18, 30);
    form.m_meter.setColourScheme(1);
    form.m_meter.setLevel(0.5F);
    EXPECT_EQ(form.colourOfLED(1), QColor(0xFF0000));
    EXPECT_EQ(form.colourOfLED(18), QColor(0x8B0000));
}

} // namespace
} // namespace velmora
