#include "Options.h"
#include "Settings.h"

namespace zol {

namespace {
const QString kSection = QStringLiteral("\\Optionen");

// Bounds for counts read back from the settings file: the window never saves
// more, and a damaged count must not make the start-up read without end.
constexpr int MaxSortierungen = 64;

SpaltenFeld S(int i, const char *feld, const char *option, const char *list)
{
    return {i, QString::fromUtf8(feld), QString::fromUtf8(option), QString::fromUtf8(list)};
}

FeldWahl W(const char *caption, const char *feld) { return {QString::fromUtf8(caption), QString::fromUtf8(feld)}; }

QString findFeld(const QList<FeldWahl> &wahl, const QString &stored)
{
    const QString v = stored.trimmed();
    if (v.isEmpty())
        return {};
    for (const FeldWahl &w : wahl)
        if (w.feld.compare(v, Qt::CaseInsensitive) == 0 || w.caption.compare(v, Qt::CaseInsensitive) == 0)
            return w.feld;
    return {};
}
}

const QList<SpaltenFeld> &spaltenTabelle()
{
    static const QList<SpaltenFeld> t = {
        S(1, "BezugsWoche", "BezugsWoche", "BezugsWoche"),
        S(2, "BezugsJahr", "BezugsJahr", "BezugsJahr"),
        S(3, "Kostenstelle", "Kostenstelle", "Kostenstelle"),
        S(4, "IdentNr", "Ident Nr.", "IdentNr"),
        S(5, "Klassifizierung", "Klassifizierung", "Klassifizierung"),
        S(6, "Standort", "Standort", "Standort"),
        S(7, "Lokalisierung", "Lokalisierung", "Lokalisierung"),
        S(8, "Hersteller", "Hersteller", "Hersteller"),
        S(9, "Typ", "Typ", "Typ"),
        S(10, "WIVerantwortlicher", "Inspekteur", "Inspekteur"),
        S(11, "AnlagenVerantwortlicher", "WI-Steuerung", "WI-Steuerung"),
        S(12, "Option1", "Laufweg", "Laufweg"),
        S(13, "Option2", "Option", "Option"),
        S(14, "KeineWartung", "Keine Wartung", "KeineWartung"),
        S(15, "KeineWartungWocheVon1", "von Woche 1", "VonWoche1"),
        S(16, "KeineWartungWocheBis1", "bis Woche 1", "BisWoche1"),
        S(17, "KeineWartungWocheVon2", "von Woche 2", "VonWoche2"),
        S(18, "KeineWartungWocheBis2", "bis Woche 2", "BisWoche2"),
    };
    return t;
}

const SpaltenFeld *spaltenFeld(int index)
{
    if (index < 1 || index > SpaltenAnzahl)
        return nullptr;
    return &spaltenTabelle().at(index - 1);
}

const QList<FeldWahl> &kopfwechselWahl()
{
    // The operating state breaks by the order's derived state (R or Z), which
    // the sheet head prints.
    static const QList<FeldWahl> t = {
        W("Komponente", "KompBezeichnung"), W("Laufweg", "Option1"),
        W("Betriebszustand", "BetriebszustandXL"), W("Material Code", "Materialcode"),
        W("Kostenstelle", "Kostenstelle"), W("Lokalisierung", "Lokalisierung"),
    };
    return t;
}

const QList<FeldWahl> &auftragsortierungWahl()
{
    // The master data of the component that the sheet prints in its block;
    // the name itself is always the last criterion of the job-sheet sort.
    static const QList<FeldWahl> t = {
        W("Kostenstelle", "Kostenstelle"), W("Ident Nr.", "IdentNr"),
        W("Klassifizierung", "Klassifizierung"), W("Standort", "Standort"),
        W("Lokalisierung", "Lokalisierung"), W("Hersteller", "Hersteller"),
        W("Typ", "Typ"), W("Inspekteur", "WIVerantwortlicher"),
        W("WI-Steuerung", "AnlagenVerantwortlicher"), W("Laufweg", "Option1"),
        W("Option", "Option2"),
    };
    return t;
}

QString kopfwechselFeld(const QString &stored) { return findFeld(kopfwechselWahl(), stored); }
QString auftragsortierungFeld(const QString &stored) { return findFeld(auftragsortierungWahl(), stored); }

void setzeSpalten(OptionState &st, const QList<int> &index)
{
    st.gSpaltenIndex.clear();
    st.gSpalteSichtbar.fill(false);
    for (int v : index) {
        if (v < 1 || v > SpaltenAnzahl || st.gSpaltenIndex.contains(v))
            continue;
        st.gSpaltenIndex << v;
        if (v <= 14)
            st.gSpalteSichtbar[v] = true;
    }
}

QList<bool> kopfwechselGewaehlt(const OptionState &st)
{
    const auto &wahl = kopfwechselWahl();
    QList<bool> on(wahl.size(), false);
    bool any = false;
    for (int i = 0; i < wahl.size(); ++i) {
        for (const QString &k : st.gKopfwechsel)
            on[i] = on[i] || kopfwechselFeld(k) == wahl.at(i).feld;
        any = any || on[i];
    }
    if (!any)
        for (int i = 0; i < wahl.size(); ++i)
            on[i] = !st.gKopfwechselAlt.isEmpty() && wahl.at(i).caption == st.gKopfwechselAlt;
    return on;
}

void setzeKopfwechsel(OptionState &st, const QList<bool> &checked)
{
    const auto &wahl = kopfwechselWahl();
    st.gKopfwechsel.clear();
    st.gKopfwechselAlt.clear();
    for (int i = 0; i < wahl.size(); ++i) {
        const bool on = checked.value(i);
        // The keys hold the box's caption, as the older key does; readers map it to the field.
        st.gKopfwechsel << (on ? wahl.at(i).caption : QString());
        if (on && st.gKopfwechselAlt.isEmpty())
            st.gKopfwechselAlt = wahl.at(i).caption;
    }
}

QList<int> auftragsortierungGewaehlt(const OptionState &st)
{
    const auto &wahl = auftragsortierungWahl();
    QList<int> out;
    for (const QString &stored : st.gAuftragsortierung) {
        const QString feld = auftragsortierungFeld(stored);
        for (int i = 0; i < wahl.size(); ++i)
            if (!feld.isEmpty() && wahl.at(i).feld == feld && !out.contains(i))
                out << i;
    }
    return out;
}

void LadeOptionen(const QString &userName, OptionState &st)
{
    const QString section = userName + kSection;

    st.gSpaltenFeld.clear();
    for (const SpaltenFeld &f : spaltenTabelle())
        st.gSpaltenFeld << f.feld;
    st.gSpaltenIndex.clear();
    for (int i = 1; i <= SpaltenAnzahl; ++i)
        st.gSpaltenIndex << i;
    st.gSpalteSichtbar.fill(false);

    const int anzahl = GetSettingInt(section, QStringLiteral("KopfIndexAnzahl"), -1);
    if (anzahl > -1) {
        // A column index outside the table (a damaged file) is left out rather
        // than shown as a column without a field.
        QList<int> index;
        for (int i = 1; i <= qMin(anzahl, SpaltenAnzahl); ++i)
            index << GetSettingInt(section, QStringLiteral("KopfIndex%1").arg(i), 0);
        setzeSpalten(st, index);
    }

    st.gKopfwechsel.clear();
    for (int i = 1; i <= 6; ++i)
        st.gKopfwechsel << GetSetting(section, QStringLiteral("Kopfwechsel%1").arg(i));

    st.gKopfwechselAlt = GetSetting(section, QStringLiteral("Kopfwechsel"));
    bool known = false;
    for (const FeldWahl &w : kopfwechselWahl())
        known = known || w.caption == st.gKopfwechselAlt;
    if (!known)
        st.gKopfwechselAlt.clear();

    st.gAuftragsortierung.clear();
    const int sortAnzahl = GetSettingInt(section, QStringLiteral("AuftragsortierungAnzahl"), -1);
    for (int i = 1; i <= qMin(sortAnzahl, MaxSortierungen); ++i)
        st.gAuftragsortierung << GetSetting(section, QStringLiteral("Auftragsortierung%1").arg(i));

    st.gDruckFormat = GetSettingInt(section, QStringLiteral("DruckFormat"), 1);
}

void LadeOptionen(Session &session) { LadeOptionen(session.login().UserName, session.options()); }

void SpeichereOptionen(const QString &userName, const OptionState &st)
{
    const QString section = userName + kSection;
    SaveSetting(section, QStringLiteral("KopfIndexAnzahl"), int(st.gSpaltenIndex.size()));
    for (int i = 0; i < st.gSpaltenIndex.size(); ++i)
        SaveSetting(section, QStringLiteral("KopfIndex%1").arg(i + 1), st.gSpaltenIndex.at(i));
    for (int i = 0; i < 6; ++i)
        SaveSetting(section, QStringLiteral("Kopfwechsel%1").arg(i + 1), st.gKopfwechsel.value(i));
    SaveSetting(section, QStringLiteral("Kopfwechsel"), st.gKopfwechselAlt);
    SaveSetting(section, QStringLiteral("AuftragsortierungAnzahl"), int(st.gAuftragsortierung.size()));
    for (int i = 0; i < st.gAuftragsortierung.size(); ++i)
        SaveSetting(section, QStringLiteral("Auftragsortierung%1").arg(i + 1), st.gAuftragsortierung.at(i));
    SaveSetting(section, QStringLiteral("DruckFormat"), st.gDruckFormat);
    syncSettings();
}

void SpeichereOptionen(Session &session) { SpeichereOptionen(session.login().UserName, session.options()); }

bool spaltenGeaendert(const OptionState &before, const OptionState &after)
{
    return before.gSpaltenIndex != after.gSpaltenIndex;
}

WindowGeometry ladeFensterLage(const QString &section, const WindowGeometry &d, const QString &prefix)
{
    WindowGeometry g;
    g.rect = QRect(GetSettingInt(section, prefix + QStringLiteral("Left"), d.rect.left()),
                   GetSettingInt(section, prefix + QStringLiteral("Top"), d.rect.top()),
                   GetSettingInt(section, prefix + QStringLiteral("Width"), d.rect.width()),
                   GetSettingInt(section, prefix + QStringLiteral("Height"), d.rect.height()));
    g.windowState = GetSettingInt(section, prefix + QStringLiteral("WindowState"), d.windowState);
    return g;
}

void speichereFensterLage(const QString &section, const WindowGeometry &lage, const QString &prefix)
{
    if (lage.windowState == 1)
        return;
    if (lage.windowState == 0) {
        SaveSetting(section, prefix + QStringLiteral("Left"), lage.rect.left());
        SaveSetting(section, prefix + QStringLiteral("Top"), lage.rect.top());
        SaveSetting(section, prefix + QStringLiteral("Width"), lage.rect.width());
        SaveSetting(section, prefix + QStringLiteral("Height"), lage.rect.height());
    }
    SaveSetting(section, prefix + QStringLiteral("WindowState"), lage.windowState);
}

}
