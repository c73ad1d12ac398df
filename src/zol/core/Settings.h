#pragma once
#include <QString>

namespace zol {

// Per-user settings by application, section and key, kept outside the data
// file. Sections begin with the user's name as typed at login, so users have
// separate settings. The store is an INI file in the per-user config location,
// or the file named by setSettingsFile (tests, --settings).
QString GetSetting(const QString &application, const QString &section, const QString &key,
                   const QString &defaultValue = {});
void SaveSetting(const QString &application, const QString &section, const QString &key, const QString &value);
// Removes a key (used where a setting goes back to its default).
void DeleteSetting(const QString &application, const QString &section, const QString &key);

// Shorthands for application "ZOL".
QString GetSetting(const QString &section, const QString &key, const QString &defaultValue = {});
int GetSettingInt(const QString &section, const QString &key, int defaultValue);
bool GetSettingBool(const QString &section, const QString &key, bool defaultValue);
void SaveSetting(const QString &section, const QString &key, const QString &value);
void SaveSetting(const QString &section, const QString &key, int value);
void SaveSettingBool(const QString &section, const QString &key, bool value);

void setSettingsFile(const QString &path);
QString settingsFile();
// Writes pending changes to disk.
void syncSettings();

}
