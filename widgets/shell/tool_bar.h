#pragma once

#include <QToolBar>

namespace velmora {

class CCommandActions;

// The buttons of the commands that the table puts on the tool bar, group by group. [main]
class CToolBar : public QToolBar
{
    Q_OBJECT

  public:
    CToolBar(const CCommandActions& actions, QWidget* pParent);
};

} // namespace velmora
