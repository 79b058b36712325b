#pragma once

#include <QString>
#include <QWidget>

namespace velmora {

// The name of the open project, and across the room whether a plug-in is loaded: the whole field then bears
// the live colour and the plug-in's name. [main]
class CPanelBanner : public QWidget
{
    Q_OBJECT

  public:
    explicit CPanelBanner(QWidget* pParent);

    void setProjectName(const QString& sName); // empty for none
    void setLoaded(bool bLoaded, const QString& sName);

    [[nodiscard]] bool isLoaded() const { return m_bLoaded; }
    [[nodiscard]] QString headline() const;
    [[nodiscard]] QString subline() const;

  protected:
    void paintEvent(QPaintEvent* pEvent) override;

  private:
    void refresh();

    QString m_sProject;
    QString m_sPlugIn;
    bool m_bLoaded = false;
};

} // namespace velmora
