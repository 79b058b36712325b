#pragma once

#include "project/codegen/new_project_request.h"

#include <QObject>

class QBoxLayout;
class QCheckBox;
class QFormLayout;
class QLineEdit;

namespace velmora {

// Makes fields that show and edit one member of the project's request each. The request, the environment and
// the dialogs must outlive the fields. [main]
class CRequestFields : public QObject
{
    Q_OBJECT

  public:
    using flag = bool CNewProjectRequest::*;
    using text = std::string CNewProjectRequest::*;
    using checkFiles = bool (*)(const CProjectEnvironment& environment, IUserDialogs& dialogs);

    CRequestFields(CNewProjectRequest& request, const CProjectEnvironment& environment, IUserDialogs& dialogs,
                   QObject* pParent);

    // Ticking the box asks pCheck, if given, whether the files for it are there. When they are not, which has
    // then been told, the box is unticked again.
    QCheckBox* addFlag(QBoxLayout& layout, const QString& sText, flag pFlag, checkFiles pCheck = nullptr);

    QLineEdit* addText(QFormLayout& layout, const QString& sLabel, text pText);

    // A line that is locked from its beginning.
    static QLineEdit* addReadOnly(QFormLayout& layout, const QString& sLabel);

    // Makes a line one that can be read and copied only, and that looks so.
    static void lock(QLineEdit& line);

    // What all forms of the dialog share.
    static void dress(QFormLayout& layout);

    // A label's text as a screen reader should say it.
    [[nodiscard]] static QString spoken(QString sLabel);

  signals:
    void edited();

  private:
    CNewProjectRequest& m_request;
    const CProjectEnvironment& m_environment;
    IUserDialogs& m_dialogs;
};

} // namespace velmora
