#pragma once
#include <QDialog>

class QLineEdit;

// "新建脚本参数设置文件": names the settings file and the script file before
// the first settings save; OK writes the empty settings file at once.
class CDlgNew : public QDialog
{
    Q_OBJECT
public:
    explicit CDlgNew(QWidget* parent = nullptr);

    QString m_strSetFileName;
    QString m_strScriptFileName;

    static const QString kSettingsFilter;
    static const QString kScriptFilter;

public slots:
    void accept() override;
    void OnBrowseSettings();
    void OnBrowseScript();

private:
    QLineEdit* m_settingsEdit;
    QLineEdit* m_scriptEdit;
};
