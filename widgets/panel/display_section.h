#pragma once

#include <QString>
#include <QWidget>

namespace velmora {

class CChoiceBar;

// The display with its selector. While there is no graph on it, it shows the project's name, the sample rate
// and the output's level. [main]
class CDisplaySection : public QWidget
{
    Q_OBJECT

  public:
    explicit CDisplaySection(QWidget* pParent);

    void setDisplay(int nDisplay); // 0 to 3; silent
    [[nodiscard]] int display() const;

    void setProjectName(const QString& sName);
    void setSampleRate(double dRate); // Hz; 0 for unknown

    // 0.0 (-60 dB) to 1.0 (0 dB). Only a reading that changes is painted.
    void setLevel(float fLevel);
    [[nodiscard]] const QString& levelText() const { return m_sLevel; }

  signals:
    void changed(int nDisplay); // by hand only

  protected:
    void changeEvent(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    void place();
    [[nodiscard]] QRect well() const;
    [[nodiscard]] QRect levelRect() const;

    CChoiceBar* m_pSelector;
    QString m_sProject;
    QString m_sRate;
    QString m_sLevel;
};

} // namespace velmora
