#include "Rights.h"
#include "Users.h"

namespace zol {

namespace {

QStringList names(std::initializer_list<const char *> list)
{
    QStringList out;
    for (const char *n : list)
        out << QString::fromUtf8(n);
    return out;
}

// What an Auswerter may never do, whatever the view.
const QStringList &auswerterOff()
{
    static const QStringList list = names({
        "mnuFileNeuOrdner", "mnuFileNeuProtokoll", "mnuFileEigenschaften", "mnuFileDelete", "mnuFileEdit",
        "mnuFileImportObjekt", "mnuFileImportAufträge", "mnuFileExportObjekt", "mnuFileExportAufträge",
        "mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuAufträgeISAuftragErstellen",
        "mnuAufträgeISAuftragBearbeiten", "mnuWartungsfreieZeiten", "mnuViewOptions",
        "mnuPopUpLv1ISAuftrag", "mnuPopUpLv1Cut", "mnuPopUpLv1Copy", "mnuPopUpLv1Paste", "mnuPopUpLv1Delete",
        "mnuPopUpLv1Umbenennen", "mnuPopUpLv1Eigenschaften", "mnuPopUpLv2Paste", "mnuPopUpLv2NeuProtokoll",
        "mnuPopUpLv2NeuOrdner", "mnuPopUpLv2Eigenschaften", "mnuPopUpTvCut", "mnuPopUpTvCopy",
        "mnuPopUpTvPaste", "mnuPopUpTvDelete", "mnuPopUpTvUmbenennen", "mnuPopUpTvEigenschaften"});
    return list;
}

// A Werker keeps his repair-order entries but loses prints, catalogs and statistics.
const QStringList &werkerOff()
{
    static const QStringList list = [] {
        QStringList l = auswerterOff();
        for (const char *keep : {"mnuAufträgeISAuftragErstellen", "mnuAufträgeISAuftragBearbeiten",
                                  "mnuPopUpLv1ISAuftrag"})
            l.removeAll(QString::fromUtf8(keep));
        l << names({"mnuFileDruckenAusgewählt", "mnuFileDruckenAusgewähltEinzel",
                    "mnuFileDruckvorschauAusgewähltEinzel", "mnuKatalogAnweisungen", "mnuKatalogBenennungen",
                    "mnuKatalogHersteller", "mnuKatalogKlassifizierung", "mnuKatalogKostenstellen",
                    "mnuKatalogLokalisierung", "mnuKatalogMaterial", "mnuKatalogOption1", "mnuKatalogOption2",
                    "mnuKatalogSicherheitshinweise", "mnuKatalogGewerk", "mnuStatistikenPlan",
                    "mnuStatistikGemeldet", "mnuStatistikAusgewählt", "mnuStatistikAufwandsverteilung",
                    "mnuRohdatenExport", "mnuTEStrukturDruck", "mnuFileExportExcelObjekt",
                    "mnuFileExportExcelAufträge"});
        return l;
    }();
    return list;
}

enum class Group { StrukturDruck, Delete, Neu, Edit, Eigenschaften, Cut, Paste, ISAuftrag };

struct Entry {
    Group group;
    QStringList commands;
};

const QList<Entry> &ruleTable()
{
    static const QList<Entry> table{
        {Group::StrukturDruck, names({"mnuTEStrukturDruck"})},
        {Group::Delete, QStringList{QStringLiteral("mnuFileDelete"), QStringLiteral("mnuPopUpLv1Delete"),
                                    QStringLiteral("mnuPopUpTvDelete"), Command::tbLoeschen}},
        {Group::Neu, names({"mnuFileNeuProtokoll", "mnuFileNeuOrdner", "mnuPopUpLv2NeuProtokoll",
                            "mnuPopUpLv2NeuOrdner"})},
        {Group::Edit, QStringList{QStringLiteral("mnuFileEdit"), QStringLiteral("mnuPopUpLv1Umbenennen"),
                                  QStringLiteral("mnuPopUpTvUmbenennen"), Command::LabelEdit}},
        {Group::Eigenschaften,
         QStringList{QStringLiteral("mnuFileEigenschaften"), QStringLiteral("mnuPopUpLv1Eigenschaften"),
                     QStringLiteral("mnuPopUpLv2Eigenschaften"), QStringLiteral("mnuPopUpTvEigenschaften"),
                     Command::tbEigenschaften}},
        {Group::Cut, QStringList{QStringLiteral("mnuEditCut"), QStringLiteral("mnuPopUpLv1Cut"),
                                 QStringLiteral("mnuPopUpTvCut"), Command::tbAusschneiden}},
        {Group::Paste, QStringList{QStringLiteral("mnuEditPaste"), QStringLiteral("mnuPopUpLv1Paste"),
                                   QStringLiteral("mnuPopUpLv2Paste"), QStringLiteral("mnuPopUpTvPaste"),
                                   Command::tbEinfuegen}},
        {Group::ISAuftrag, names({"mnuPopUpLv1ISAuftrag"})},
    };
    return table;
}

bool groupEnabled(Group g, bool p, bool s, int m)
{
    switch (g) {
    case Group::StrukturDruck:
        return m == Ansicht::Struktur;
    case Group::Delete:
    case Group::Edit:
    case Group::Cut:
        return !p || m == Ansicht::SuchOhne || (m == Ansicht::Struktur && !s);
    case Group::Neu:
    case Group::Paste:
        return m == Ansicht::Struktur && !(p && s);
    case Group::Eigenschaften:
        return !p || m == Ansicht::Such || m == Ansicht::SuchOhne || (m == Ansicht::Struktur && !s);
    case Group::ISAuftrag:
        return m == Ansicht::Struktur && !s;
    }
    return false;
}

}

const QStringList &governedCommands()
{
    static const QStringList all = [] {
        QStringList l;
        for (const Entry &e : ruleTable())
            l << e.commands;
        l << auswerterOff() << werkerOff();
        l.removeDuplicates();
        return l;
    }();
    return all;
}

QSet<QString> enabledCommands(const QString &level, bool inStandards, int view)
{
    const bool p = level != Role::Master && level != Role::Administrator;
    QSet<QString> on(governedCommands().cbegin(), governedCommands().cend());
    for (const Entry &e : ruleTable()) {
        if (!groupEnabled(e.group, p, inStandards, view))
            for (const QString &c : e.commands)
                on.remove(c);
    }
    const QStringList *off = level == Role::Auswerter ? &auswerterOff() : level == Role::Werker ? &werkerOff() : nullptr;
    if (off)
        for (const QString &c : *off)
            on.remove(c);
    return on;
}

bool standardCheckRefuses(const QString &level, bool isStandard)
{
    if (level == Role::Administrator || level == Role::Master)
        return false;
    return isStandard || level == Role::Auswerter || level == Role::Werker;
}

}
