#include "Settings.h"
#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <memory>

namespace zol {

namespace {
QString g_file;
std::unique_ptr<QSettings> g_store;

QSettings &store()
{
    if (!g_store) {
        if (g_file.isEmpty()) {
            const QString env = qEnvironmentVariable("ZOL_SETTINGS");
            g_file = !env.isEmpty() ? env
                                    : QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
                                          .filePath(QStringLiteral("ZOL/ZOL.ini"));
        }
        g_store = std::make_unique<QSettings>(g_file, QSettings::IniFormat);
    }
    return *g_store;
}

// "Anna\env\MainSettings" + "Pfad" -> "ZOL/Anna/env/MainSettings/Pfad"
QString path(const QString &application, const QString &section, const QString &key)
{
    QString p = application + QLatin1Char('/') + section + QLatin1Char('/') + key;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (p.contains(QLatin1String("//")))
        p.replace(QLatin1String("//"), QLatin1String("/"));
    return p;
}
}

void setSettingsFile(const QString &file)
{
    if (g_store)
        g_store->sync();
    g_store.reset();
    g_file = file;
}

QString settingsFile()
{
    store();
    return g_file;
}

void syncSettings()
{
    if (g_store)
        g_store->sync();
}

QString GetSetting(const QString &application, const QString &section, const QString &key, const QString &defaultValue)
{
    return store().value(path(application, section, key), defaultValue).toString();
}

void SaveSetting(const QString &application, const QString &section, const QString &key, const QString &value)
{
    store().setValue(path(application, section, key), value);
}

void DeleteSetting(const QString &application, const QString &section, const QString &key)
{
    store().remove(path(application, section, key));
}

static const QString kApp = QStringLiteral("ZOL");

QString GetSetting(const QString &section, const QString &key, const QString &defaultValue)
{
    return GetSetting(kApp, section, key, defaultValue);
}

int GetSettingInt(const QString &section, const QString &key, int defaultValue)
{
    bool ok = false;
    const int v = GetSetting(kApp, section, key, QString::number(defaultValue)).trimmed().toInt(&ok);
    return ok ? v : defaultValue;
}

bool GetSettingBool(const QString &section, const QString &key, bool defaultValue)
{
    const QString v = GetSetting(kApp, section, key, defaultValue ? QStringLiteral("True") : QStringLiteral("False"));
    if (v.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 || v == QLatin1String("-1") || v == QLatin1String("1"))
        return true;
    if (v.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0 || v == QLatin1String("0"))
        return false;
    return defaultValue;
}

void SaveSetting(const QString &section, const QString &key, const QString &value) { SaveSetting(kApp, section, key, value); }
void SaveSetting(const QString &section, const QString &key, int value) { SaveSetting(kApp, section, key, QString::number(value)); }
void SaveSettingBool(const QString &section, const QString &key, bool value)
{
    SaveSetting(kApp, section, key, value ? QStringLiteral("True") : QStringLiteral("False"));
}

}
