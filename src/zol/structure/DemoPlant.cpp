#include "DemoPlant.h"
#include "zol/repair/RepairOrders.h"
#include "Node.h"
#include "zol/core/Passwords.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/instructions/InstructionRow.h"
#include <QHash>

namespace zol {

const QList<DemoUser> &demoUsers()
{
    static const QList<DemoUser> users = {
        {QStringLiteral("Admin"), QStringLiteral("admin"), QStringLiteral("Administrator")},
        {QStringLiteral("Meister"), QStringLiteral("meister"), QStringLiteral("Master")},
        {QStringLiteral("Benutzer"), QStringLiteral("benutzer"), QStringLiteral("Benutzer")},
        {QStringLiteral("Auswerter"), QStringLiteral("auswerter"), QStringLiteral("Auswerter")},
        {QStringLiteral("Werker"), QStringLiteral("werker"), QStringLiteral("Werker(Elektro)")},
    };
    return users;
}

namespace {

struct Line {
    const char *text;
    const char *trade;
    const char *state;   // R running, L at standstill, X either
    int persons;
    const char *interval;
    const char *planzeit;
    const char *material = "";
    const char *menge = "0,0";
};
struct Object {
    const char *name;
    QList<Line> lines;
};
using Kit = QList<Object>;

const Object motor{"Elektromotor",
                   {{"Motor auf ungewöhnliche Geräusche und Schwingungen prüfen", "Elektro", "R", 1, "1W", "0,1"},
                    {"Lagertemperatur messen und dokumentieren", "Elektro", "R", 1, "4W", "0,2"},
                    {"Klemmkasten auf Dichtheit und festen Sitz der Anschlüsse prüfen", "Elektro", "L", 1, "1J", "0,5"},
                    {"Isolationswiderstand der Wicklung messen", "Elektro", "L", 2, "2J", "1,0"}}};

const QHash<QString, Kit> &kits()
{
    static const QHash<QString, Kit> k = {
        {QStringLiteral("Kreiselpumpe"),
         {{"Kreiselpumpe",
           {{"Gleitringdichtung auf Leckage prüfen", "Mechanik", "R", 1, "1W", "0,1"},
            {"Förderdruck und Saugdruck ablesen und dokumentieren", "MSR", "R", 1, "WT", "0,1"},
            {"Lager nachschmieren", "Mechanik", "R", 1, "3M", "0,3", "Wälzlagerfett", "0,2"},
            {"Kupplung auf Verschleiß und Ausrichtung prüfen", "Mechanik", "L", 2, "6M", "1,0"},
            {"Laufrad und Spaltringe auf Verschleiß prüfen", "Schlosserei", "L", 2, "2J", "4,0"}}},
          motor}},
        {QStringLiteral("Armatur"),
         {{"Armatur",
           {{"Stopfbuchse auf Dichtheit prüfen", "Mechanik", "X", 1, "4W", "0,2"},
            {"Armatur einmal ganz auf- und zufahren", "Mechanik", "X", 1, "3M", "0,3"},
            {"Spindel reinigen und fetten", "Mechanik", "L", 1, "6M", "0,5", "Armaturenfett", "0,1"},
            {"Stellungsanzeige und Endschalter prüfen", "MSR", "X", 1, "1J", "0,5"},
            {"Flanschverbindungen auf Korrosion prüfen", "Schlosserei", "X", 1, "1J", "0,3"}}}}},
        {QStringLiteral("Behälter"),
         {{"Behälter",
           {{"Füllstand ablesen und mit Sollwert vergleichen", "MSR", "R", 1, "1T", "0,1"},
            {"Behälter von außen auf Korrosion und Leckagen prüfen", "Schlosserei", "X", 1, "4W", "0,3"},
            {"Sicherheitsventil anlüften", "Mechanik", "R", 1, "3M", "0,2"},
            {"Schlamm ablassen", "Mechanik", "R", 1, "1W", "0,2"},
            {"Innere Prüfung vorbereiten und begleiten", "Schlosserei", "L", 2, "5J", "8,0"},
            {"Füllstandsmessung kalibrieren", "MSR", "L", 1, "1J", "1,0"}}}}},
        {QStringLiteral("Kompressor"),
         {{"Schraubenkompressor",
           {{"Ölstand prüfen, gegebenenfalls nachfüllen", "Mechanik", "R", 1, "1W", "0,1", "Kompressoröl", "0,5"},
            {"Kondensatableiter auf Funktion prüfen", "Mechanik", "R", 1, "2W", "0,2"},
            {"Ansaugfilter wechseln", "Mechanik", "L", 1, "4M", "0,5", "Luftfilter", "1,0"},
            {"Ölfilter und Öl wechseln", "Mechanik", "L", 1, "1J", "1,5", "Kompressoröl", "20,0"},
            {"Enddruck und Abschaltdruck prüfen", "MSR", "R", 1, "3M", "0,3"},
            {"Keilriemen prüfen und nachspannen", "Mechanik", "L", 1, "6M", "0,5"}}},
          motor}},
        {QStringLiteral("Ventilator"),
         {{"Ventilator",
           {{"Laufgeräusch und Schwingungen prüfen", "Mechanik", "R", 1, "1W", "0,1"},
            {"Laufrad reinigen", "Mechanik", "L", 2, "6M", "2,0"},
            {"Lager nachschmieren", "Mechanik", "R", 1, "3M", "0,2", "Wälzlagerfett", "0,1"},
            {"Schwingungsdämpfer auf Risse prüfen", "Schlosserei", "L", 1, "1J", "0,5"}}},
          motor}},
        {QStringLiteral("Schaltanlage"),
         {{"Schaltanlage",
           {{"Schaltschrank auf Verschmutzung und Feuchtigkeit prüfen", "Elektro", "R", 1, "4W", "0,3"},
            {"Meldeleuchten und Anzeigen prüfen", "Elektro", "R", 1, "1W", "0,1"},
            {"Schaltschranklüfter und Filtermatte prüfen", "Elektro", "R", 1, "3M", "0,3", "Filtermatte", "1,0"},
            {"Klemmen nachziehen", "Elektro", "L", 2, "2J", "3,0"},
            {"Thermografie der Sammelschienen", "Elektro", "R", 1, "1J", "1,5"},
            {"Prüfung nach DGUV Vorschrift 3", "Elektro", "L", 2, "4J", "6,0"}}}}},
        {QStringLiteral("Transformator"),
         {{"Transformator",
           {{"Öltemperatur und Wicklungstemperatur ablesen", "Elektro", "R", 1, "1W", "0,1"},
            {"Trockenmittel des Luftentfeuchters prüfen", "Elektro", "R", 1, "3M", "0,2", "Silicagel", "1,0"},
            {"Ölprobe entnehmen und untersuchen lassen", "Elektro", "R", 1, "2J", "1,0"},
            {"Buchholzrelais auf Funktion prüfen", "Elektro", "L", 2, "4J", "2,0"},
            {"Dichtungen auf Ölverlust prüfen", "Mechanik", "R", 1, "6M", "0,3"}}}}},
        {QStringLiteral("Brenner"),
         {{"Brenner",
           {{"Flammbild prüfen", "MSR", "R", 1, "1T", "0,1"},
            {"Abgaswerte messen und einstellen", "MSR", "R", 1, "6M", "1,5"},
            {"Zündelektroden reinigen und einstellen", "MSR", "L", 1, "1J", "1,0"},
            {"Flammenwächter prüfen", "MSR", "L", 1, "3M", "0,5"},
            {"Gasstrecke auf Dichtheit prüfen", "Schlosserei", "L", 2, "1J", "1,0"}}},
          {"Gebläse",
           {{"Gebläserad reinigen", "Mechanik", "L", 1, "1J", "1,0"},
            {"Luftklappe auf Leichtgängigkeit prüfen", "Mechanik", "L", 1, "6M", "0,3"}}}}},
        {QStringLiteral("Wärmetauscher"),
         {{"Wärmetauscher",
           {{"Vorlauf- und Rücklauftemperatur ablesen", "MSR", "R", 1, "WT", "0,1"},
            {"Differenzdruck prüfen", "MSR", "R", 1, "2W", "0,1"},
            {"Platten reinigen", "Schlosserei", "L", 3, "2J", "8,0", "Dichtungssatz", "1,0"},
            {"Spannschrauben auf Sitz prüfen", "Schlosserei", "L", 1, "1J", "0,5"},
            {"Dichtungen auf Leckage prüfen", "Mechanik", "R", 1, "4W", "0,2"}}}}},
        {QStringLiteral("Aggregat"),
         {{"Dieselmotor",
           {{"Probelauf unter Last", "Elektro", "R", 2, "4W", "1,0"},
            {"Ölstand und Kühlwasserstand prüfen", "Mechanik", "L", 1, "2W", "0,2"},
            {"Motoröl und Ölfilter wechseln", "Mechanik", "L", 1, "1J", "2,0", "Motoröl 15W-40", "12,0"},
            {"Starterbatterien prüfen", "Elektro", "L", 1, "3M", "0,5"},
            {"Kraftstofffilter wechseln", "Mechanik", "L", 1, "2J", "1,0", "Kraftstofffilter", "1,0"}}},
          {"Generator",
           {{"Spannung und Frequenz im Probelauf ablesen", "Elektro", "R", 1, "4W", "0,2"},
            {"Schleifringe und Bürsten prüfen", "Elektro", "L", 1, "1J", "1,0"}}}}},
        {QStringLiteral("Lüftungsgerät"),
         {{"Lüftungsgerät",
           {{"Filter auf Verschmutzung prüfen", "Mechanik", "R", 1, "4W", "0,2"},
            {"Filter wechseln", "Mechanik", "L", 1, "6M", "1,0", "Taschenfilter F7", "4,0"},
            {"Keilriemen prüfen und nachspannen", "Mechanik", "L", 1, "3M", "0,5", "Keilriemen", "2,0"},
            {"Frostschutzthermostat prüfen", "MSR", "L", 1, "1J", "0,5"},
            {"Lufterhitzer reinigen", "Schlosserei", "L", 2, "1J", "2,0"}}},
          motor}},
        {QStringLiteral("Klappe"),
         {{"Brandschutzklappe",
           {{"Auslösung von Hand prüfen", "Mechanik", "L", 1, "6M", "0,3"},
            {"Schmelzlot auf Zustand prüfen", "Mechanik", "L", 1, "1J", "0,2", "Schmelzlot 72 °C", "1,0"},
            {"Endschalter und Rückmeldung an die Leitwarte prüfen", "MSR", "L", 1, "1J", "0,3"},
            {"Klappenblatt und Dichtung reinigen", "Schlosserei", "L", 1, "1J", "0,5"},
            {"Stellantrieb auf Funktion prüfen", "Elektro", "L", 1, "6M", "0,3"}}}}},
    };
    return k;
}

struct Comp {
    const char *name;
    const char *kit;
    const char *identPrefix;
    const char *klass;
    const char *hersteller;
    const char *typ;
    const char *lokal;
    const char *trade;
    const char *keineVon1 = "";
    const char *keineBis1 = "";
    const char *keineVon2 = "";
    const char *keineBis2 = "";
};
struct Inst {
    const char *name;
    const char *kostenstelle;
    const char *verantwortlich;
    const char *laufweg;
    QList<Comp> components;
    QList<Inst> children;
};

QList<Inst> plant()
{
    return {
        {"Kesselhaus", "4100-KH", "Hr. Berger", "Rundgang A",
         {{"Abgasventilator", "Ventilator", "KH-V", "Ventilator", "Nicotra", "ADH 500", "Kesselhaus Dach", "Mechanik"},
          {"Kondensatpumpe", "Kreiselpumpe", "KH-P", "Pumpe", "Grundfos", "CR 10-4", "Kesselhaus EG", "Mechanik"}},
         {{"Dampfkessel 1", "4110-DK1", "Hr. Berger", "Rundgang A",
           {{"Brenner DK1", "Brenner", "KH-B", "Feuerungsanlage", "Weishaupt", "WM-G 30/3", "Kesselhaus EG", "MSR",
             "27", "30"},
            {"Hauptdampfventil DK1", "Armatur", "KH-A", "Armatur", "ARI", "Stevi 470 DN150", "Kesselhaus Bühne",
             "Mechanik"},
            {"Dampfkessel 1 Druckteil", "Behälter", "KH-D", "Druckbehälter", "Bosch", "UL-S 8000", "Kesselhaus EG",
             "Schlosserei", "27", "30"}},
           {}},
          {"Speisewasser", "4120-SW", "Fr. Lorenz", "Rundgang A",
           {{"Speisewasserbehälter", "Behälter", "KH-D", "Druckbehälter", "Bosch", "WSM-V 10", "Kesselhaus OG",
             "Schlosserei"},
            {"Speisewasserpumpe 1", "Kreiselpumpe", "KH-P", "Pumpe", "KSB", "Movitec VCI 15", "Kesselhaus EG",
             "Mechanik"},
            {"Speisewasserpumpe 2", "Kreiselpumpe", "KH-P", "Pumpe", "KSB", "Movitec VCI 15", "Kesselhaus EG",
             "Mechanik"},
            {"Enthärtungsanlage", "Behälter", "KH-W", "Wasseraufbereitung", "Grünbeck", "Delta-p 40",
             "Kesselhaus Keller", "MSR"}},
           {}}}},
        {"Pumpstation Nord", "4200-PN", "Hr. Yilmaz", "Rundgang B",
         {{"Kreiselpumpe P1", "Kreiselpumpe", "PN-P", "Pumpe", "KSB", "Etanorm 125-250", "Pumpenhaus Nord",
           "Mechanik"},
          {"Kreiselpumpe P2", "Kreiselpumpe", "PN-P", "Pumpe", "KSB", "Etanorm 125-250", "Pumpenhaus Nord",
           "Mechanik"},
          {"Tauchmotorpumpe Sumpf", "Kreiselpumpe", "PN-P", "Pumpe", "Flygt", "NP 3127", "Pumpensumpf Nord",
           "Mechanik", "01", "08"},
          {"Absperrschieber DN200", "Armatur", "PN-A", "Armatur", "VAG", "EKO plus DN200", "Pumpenhaus Nord",
           "Schlosserei"},
          {"Schaltschrank Pumpstation", "Schaltanlage", "PN-E", "Elektrische Anlage", "Rittal", "TS 8",
           "Pumpenhaus Nord", "Elektro"}},
         {}},
        {"Druckluftstation", "4300-DL", "Hr. Krämer", "Rundgang B",
         {{"Schraubenkompressor K1", "Kompressor", "DL-K", "Verdichter", "Kaeser", "ASD 40", "Kompressorraum",
           "Mechanik"},
          {"Schraubenkompressor K2", "Kompressor", "DL-K", "Verdichter", "Kaeser", "ASD 40", "Kompressorraum",
           "Mechanik", "51", "02"},
          {"Druckluftbehälter 3000 l", "Behälter", "DL-D", "Druckbehälter", "Behälterbau Nord", "DLB 3000/11",
           "Kompressorraum", "Schlosserei"},
          {"Kältetrockner", "Wärmetauscher", "DL-T", "Trockner", "Kaeser", "TD 76", "Kompressorraum", "MSR"}},
         {}},
        {"Kühlwasser", "4400-KW", "Fr. Lorenz", "Rundgang C",
         {},
         {{"Kühlturm", "4410-KT", "Fr. Lorenz", "Rundgang C",
           {{"Kühlturmventilator", "Ventilator", "KW-V", "Ventilator", "Baltimore", "VTL 116", "Kühlturm Dach",
             "Mechanik", "01", "10", "48", "52"},
            {"Kühlwasserpumpe 1", "Kreiselpumpe", "KW-P", "Pumpe", "Wilo", "Atmos Giga-N 100", "Kühlturm EG",
             "Mechanik"},
            {"Kühlwasserpumpe 2", "Kreiselpumpe", "KW-P", "Pumpe", "Wilo", "Atmos Giga-N 100", "Kühlturm EG",
             "Mechanik"},
            {"Absalzventil", "Armatur", "KW-A", "Armatur", "Bürkert", "Typ 2000", "Kühlturm EG", "MSR"}},
           {}},
          {"Rückkühlwerk", "4420-RK", "Fr. Lorenz", "Rundgang C",
           {{"Plattenwärmetauscher", "Wärmetauscher", "KW-W", "Wärmetauscher", "Alfa Laval", "M10-BFG",
             "Rückkühlwerk", "Schlosserei"}},
           {}}}},
        {"Elektroversorgung", "4500-EV", "Hr. Schulte", "Rundgang D",
         {{"Transformator T1", "Transformator", "EV-T", "Transformator", "Siemens", "GEAFOL 1000 kVA", "Trafostation",
           "Elektro"},
          {"Niederspannungshauptverteilung", "Schaltanlage", "EV-E", "Elektrische Anlage", "ABB", "MNS 3.0",
           "Trafostation", "Elektro"},
          {"USV-Anlage Leitwarte", "Schaltanlage", "EV-U", "Elektrische Anlage", "Eaton", "93PM 50 kW", "Leitwarte",
           "Elektro"},
          {"Notstromaggregat", "Aggregat", "EV-N", "Aggregat", "MTU", "DS 400", "Notstromraum", "Elektro"}},
         {}},
        {"Lüftung Werkhalle", "4600-LW", "Hr. Krämer", "Rundgang D",
         {{"Zuluftgerät Halle 3", "Lüftungsgerät", "LW-L", "Raumlufttechnik", "Wolf", "KG Top 100", "Halle 3 Dach",
           "Mechanik"},
          {"Abluftventilator Halle 3", "Ventilator", "LW-V", "Ventilator", "Ziehl-Abegg", "ZN063", "Halle 3 Dach",
           "Mechanik"},
          {"Brandschutzklappe BSK 1", "Klappe", "LW-K", "Brandschutz", "Trox", "FKA-EU", "Halle 3 Technikraum",
           "Mechanik"}},
         {}},
    };
}

struct Catalog {
    const char *table;
    QList<std::pair<const char *, QList<std::pair<const char *, const char *>>>> folders;   // folder -> (Text, further field)
};

QList<Catalog> catalogs()
{
    return {
        {"Texte",
         {{"Pumpen",
           {{"Gleitringdichtung auf Leckage prüfen", "1W"},
            {"Lager nachschmieren", "3M"},
            {"Kupplung auf Verschleiß und Ausrichtung prüfen", "6M"}}},
          {"Elektrik",
           {{"Isolationswiderstand der Wicklung messen", "2J"},
            {"Klemmen nachziehen", "2J"},
            {"Thermografie der Sammelschienen", "1J"}}},
          {"Allgemein", {{"Sichtprüfung auf Beschädigung und Korrosion", "4W"}, {"Reinigen", "3M"}}}}},
        {"Material",
         {{"Schmierstoffe",
           {{"Wälzlagerfett", "Lithiumverseiftes Wälzlagerfett, Kartusche 400 g"},
            {"Kompressoröl", "Synthetisches Verdichteröl, Liter"},
            {"Motoröl 15W-40", "Motoröl, Liter"},
            {"Armaturenfett", "Spindelfett für Armaturen, Dose 1 kg"}}},
          {"Filter",
           {{"Luftfilter", "Ansaugfilter Schraubenkompressor"},
            {"Taschenfilter F7", "Taschenfilter 592 x 592 mm"},
            {"Filtermatte", "Filtermatte für Schaltschranklüfter"},
            {"Kraftstofffilter", "Kraftstofffilter Dieselmotor"}}}}},
        {"SHinweise",
         {{"Elektrische Gefährdung",
           {{"Freischalten und gegen Wiedereinschalten sichern", "Die fünf Sicherheitsregeln beachten"},
            {"Arbeiten nur durch Elektrofachkraft", "Qualifikation nach DGUV Vorschrift 3"}}},
          {"Mechanische Gefährdung",
           {{"Anlage drucklos machen", "Vor dem Öffnen Druck ablassen und Absperrungen sichern"},
            {"Gehörschutz tragen", "Lärmbereich über 85 dB(A)"},
            {"Heiße Oberflächen", "Schutzhandschuhe tragen, Abkühlen abwarten"}}}}},
        {"Gewerke",
         {{"Eigene Werkstätten",
           {{"Elektro", "Elektrowerkstatt"},
            {"Mechanik", "Mechanische Werkstatt"},
            {"MSR", "Mess-, Steuer- und Regeltechnik"},
            {"Schlosserei", "Schlosserei und Stahlbau"}}}}},
        {"Kostenstellen",
         {{"Energie",
           {{"4100-KH", "Kesselhaus"},
            {"4110-DK1", "Dampfkessel 1"},
            {"4120-SW", "Speisewasser"},
            {"4500-EV", "Elektroversorgung"}}},
          {"Medien",
           {{"4200-PN", "Pumpstation Nord"},
            {"4300-DL", "Druckluftstation"},
            {"4400-KW", "Kühlwasser"},
            {"4410-KT", "Kühlturm"},
            {"4420-RK", "Rückkühlwerk"},
            {"4600-LW", "Lüftung Werkhalle"}}}}},
        {"Klassifizierungen",
         {{"Maschinen",
           {{"Pumpe", ""}, {"Verdichter", ""}, {"Ventilator", ""}, {"Aggregat", ""}, {"Feuerungsanlage", ""}}},
          {"Apparate",
           {{"Druckbehälter", "prüfpflichtig nach BetrSichV"},
            {"Wärmetauscher", ""},
            {"Trockner", ""},
            {"Armatur", ""},
            {"Wasseraufbereitung", ""}}},
          {"Elektrotechnik", {{"Elektrische Anlage", ""}, {"Transformator", ""}}},
          {"Gebäudetechnik", {{"Raumlufttechnik", ""}, {"Brandschutz", ""}}}}},
        {"Lokalisierungen",
         {{"Werk Süd",
           {{"Kesselhaus EG", ""},
            {"Kesselhaus OG", ""},
            {"Kesselhaus Keller", ""},
            {"Kesselhaus Bühne", ""},
            {"Kesselhaus Dach", ""},
            {"Trafostation", ""},
            {"Notstromraum", ""},
            {"Leitwarte", ""}}},
          {"Werk Nord",
           {{"Pumpenhaus Nord", ""},
            {"Pumpensumpf Nord", ""},
            {"Kompressorraum", ""},
            {"Kühlturm EG", ""},
            {"Kühlturm Dach", ""},
            {"Rückkühlwerk", ""},
            {"Halle 3 Dach", ""},
            {"Halle 3 Technikraum", ""}}}}},
        {"Hersteller",
         {{"Pumpen und Armaturen",
           {{"KSB", "Frankenthal"}, {"Grundfos", ""}, {"Wilo", "Dortmund"}, {"Flygt", ""}, {"ARI", ""}, {"VAG", ""}}},
          {"Maschinen", {{"Kaeser", "Coburg"}, {"MTU", ""}, {"Nicotra", ""}, {"Ziehl-Abegg", ""}}},
          {"Elektro", {{"Siemens", ""}, {"ABB", ""}, {"Eaton", ""}, {"Rittal", ""}}}}},
        {"Benennungen",
         {{"Maschinen",
           {{"Kreiselpumpe", "Kreiselpumpe mit Elektromotor"},
            {"Schraubenkompressor", ""},
            {"Ventilator", ""}}},
          {"Apparate", {{"Druckbehälter", ""}, {"Plattenwärmetauscher", ""}, {"Absperrschieber", ""}}}}},
        {"Option1",
         {{"Rundgänge",
           {{"Rundgang A", "Kesselhaus und Speisewasser"},
            {"Rundgang B", "Pumpstation und Druckluft"},
            {"Rundgang C", "Kühlwasser"},
            {"Rundgang D", "Elektroversorgung und Lüftung"}}}}},
        {"Option2",
         {{"Prüfpflicht",
           {{"ZÜS-Prüfung", "Prüfung durch zugelassene Überwachungsstelle"},
            {"Eigenprüfung", "Prüfung durch befähigte Person"}}}}},
    };
}

// The table gives the times in hours, as a planner thinks of them; the field holds minutes.
QString minuten(const char *stunden)
{
    return QString::number(numericValue(QString::fromUtf8(stunden)) * 60, 'f', 1).replace(QLatin1Char('.'), QLatin1Char(','));
}

class Writer {
public:
    Writer(const QSqlDatabase &db, int jahr)
        : m_db(db), m_jahr(jahr),
          m_line(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Ausfuehrender, "
                                    "Betriebszustand, AnzahlPersonen, Sicherheitshinweis, Intervall, Planzeit, "
                                    "Materialcode, Materialmenge, Intervalltyp) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)"))
    {
        QSqlQuery q = exec(db, QStringLiteral("SELECT Intervall, Typ FROM Intervalle"));
        while (q.next())
            m_typ.insert(q.value(0).toString(), q.value(1).toString());
    }

    QString installation(const QString &above, const QString &katalog, const Inst &inst)
    {
        Node n;
        n.FileIndex = NeuerFileIndex(m_db, QStringLiteral("ProtokollKopf"));
        n.FileAbove = above;
        n.FileTyp = FileTypOrdner;
        n.Katalog = katalog;
        n.Text = QString::fromUtf8(inst.name);
        n.Kostenstelle = QString::fromUtf8(inst.kostenstelle);
        n.AnlagenVerantwortlicher = QString::fromUtf8(inst.verantwortlich);
        n.KeineWartung = QStringLiteral("N");
        saveNode(m_db, n);
        for (const Comp &c : inst.components)
            component(n.FileIndex, inst, c);
        for (const Inst &child : inst.children)
            installation(n.FileIndex, katalog, child);
        return n.FileIndex;
    }

    void component(const QString &above, const Inst &inst, const Comp &c)
    {
        Node n;
        n.FileIndex = NeuerFileIndex(m_db, QStringLiteral("ProtokollKopf"));
        n.FileAbove = above;
        n.FileTyp = FileTypFile;
        n.Katalog = QStringLiteral("0");
        n.Text = QString::fromUtf8(c.name);
        ++m_count;
        n.BezugsJahr = QString::number(m_jahr);
        // Reference weeks spread over the year, so every week of a planning run has work.
        n.BezugsWoche = QStringLiteral("%1").arg((m_count * 7 - 6) % 52 + 1, 2, 10, QLatin1Char('0'));
        n.Kostenstelle = QString::fromUtf8(inst.kostenstelle);
        const QString prefix = QString::fromUtf8(c.identPrefix);
        n.IdentNr = QStringLiteral("%1-%2").arg(prefix).arg(++m_identCounter[prefix], 3, 10, QLatin1Char('0'));
        n.Klassifizierung = QString::fromUtf8(c.klass);
        n.Standort = QStringLiteral("Werk Süd");
        n.Lokalisierung = QString::fromUtf8(c.lokal);
        if (n.Lokalisierung.contains(QLatin1String("Nord")) || n.Lokalisierung.startsWith(QLatin1String("Kühl"))
            || n.Lokalisierung.startsWith(QLatin1String("Kompressor")) || n.Lokalisierung.startsWith(QLatin1String("Rück"))
            || n.Lokalisierung.startsWith(QLatin1String("Halle")))
            n.Standort = QStringLiteral("Werk Nord");
        n.Hersteller = QString::fromUtf8(c.hersteller);
        n.Typ = QString::fromUtf8(c.typ);
        n.WIVerantwortlicher = QString::fromUtf8(c.trade);
        n.AnlagenVerantwortlicher = QString::fromUtf8(inst.verantwortlich);
        n.Option1 = QString::fromUtf8(inst.laufweg);
        n.Option2 = n.Klassifizierung == QLatin1String("Druckbehälter") ? QStringLiteral("ZÜS-Prüfung")
                                                                         : QStringLiteral("Eigenprüfung");
        const bool keine = *c.keineVon1 != 0;
        n.KeineWartung = keine ? QStringLiteral("J") : QStringLiteral("N");
        n.KeineWartungWocheVon1 = QString::fromUtf8(c.keineVon1);
        n.KeineWartungWocheBis1 = QString::fromUtf8(c.keineBis1);
        n.KeineWartungWocheVon2 = QString::fromUtf8(c.keineVon2);
        n.KeineWartungWocheBis2 = QString::fromUtf8(c.keineBis2);
        saveNode(m_db, n);
        lines(n.FileIndex, kits().value(QString::fromUtf8(c.kit)));
    }

    QString standard(const QString &above, const QString &name, const QString &kit, const QString &trade)
    {
        Node n;
        n.FileIndex = NeuerFileIndex(m_db, QStringLiteral("ProtokollKopf"));
        n.FileAbove = above;
        n.FileTyp = FileTypFile;
        n.Katalog = QStringLiteral("1");
        n.Text = name;
        n.Klassifizierung = kit;
        n.WIVerantwortlicher = trade;
        n.KeineWartung = QStringLiteral("N");
        saveNode(m_db, n);
        lines(n.FileIndex, kits().value(kit));
        return n.FileIndex;
    }

    QString folder(const QString &above, const QString &name)
    {
        Node n;
        n.FileIndex = NeuerFileIndex(m_db, QStringLiteral("ProtokollKopf"));
        n.FileAbove = above;
        n.FileTyp = FileTypOrdner;
        n.Katalog = QStringLiteral("1");
        n.Text = name;
        n.KeineWartung = QStringLiteral("N");
        saveNode(m_db, n);
        return n.FileIndex;
    }

private:
    void lines(const QString &teNummer, const Kit &kit)
    {
        int objekt = 0;
        for (const Object &o : kit) {
            objekt += 10;
            const QString obj = QStringLiteral("%1").arg(objekt, 6, 10, QLatin1Char('0'));
            m_line.run({teNummer, obj, QStringLiteral("0000"), QString::fromUtf8(o.name), QString(), QString(),
                        QStringLiteral("0"), QString(), QString(), QStringLiteral("0,0"), QString(),
                        QStringLiteral("0,0"), QString()});
            int anweisung = 0;
            for (const Line &l : o.lines) {
                anweisung += 10;
                const QString interval = QString::fromUtf8(l.interval);
                const QString trade = QString::fromUtf8(l.trade);
                const QString hinweis = trade == QLatin1String("Elektro") && *l.state == 'L'
                    ? QStringLiteral("Freischalten und gegen Wiedereinschalten sichern")
                    : QString();
                m_line.run({teNummer, obj, QStringLiteral("%1").arg(anweisung, 4, 10, QLatin1Char('0')),
                            QString::fromUtf8(l.text), trade, QString::fromUtf8(l.state),
                            QString::number(l.persons), hinweis, interval, minuten(l.planzeit),
                            QString::fromUtf8(l.material), QString::fromUtf8(l.menge), m_typ.value(interval)});
            }
        }
    }

    QSqlDatabase m_db;
    int m_jahr;
    Statement m_line;
    QHash<QString, QString> m_typ;
    QHash<QString, int> m_identCounter;
    int m_count = 0;
};

void addCatalogs(const QSqlDatabase &db)
{
    for (const Catalog &c : catalogs()) {
        const QString table = QString::fromUtf8(c.table);
        const QString further = Schema::table(table).fields.at(4).name;
        Statement insert(db, QStringLiteral("INSERT INTO %1 (FileIndex, FileAbove, FileTyp, Text, %2) VALUES (?,?,?,?,?)")
                                 .arg(ident(table), ident(further)));
        for (const auto &[folderName, entries] : c.folders) {
            const QString folderKey = NeuerFileIndex(db, table);
            insert.run({folderKey, QStringLiteral("ROOT"), QStringLiteral("O"), QString::fromUtf8(folderName), QString()});
            for (const auto &[text, extra] : entries)
                insert.run({NeuerFileIndex(db, table), folderKey, QStringLiteral("F"), QString::fromUtf8(text),
                            QString::fromUtf8(extra)});
        }
    }
}

void addUsers(const QSqlDatabase &db)
{
    Statement exists(db, QStringLiteral("SELECT 1 FROM \"User\" WHERE Name = ?"));
    Statement insert(db, QStringLiteral("INSERT INTO \"User\" (Name, \"Paßwort\", Level) VALUES (?,?,?)"));
    for (const DemoUser &u : demoUsers()) {
        if (exists.run({u.name}).next())
            continue;
        insert.run({u.name, hashPassword(u.password), u.level});
    }
}

}   // namespace

void addDemoPlant(const QSqlDatabase &db, int bezugsJahr)
{
    Transaction tx(db);
    Writer w(db, bezugsJahr);
    for (const Inst &inst : plant())
        w.installation(RootProtok, QStringLiteral("0"), inst);

    const QString pumpen = w.folder(RootKatalo, QStringLiteral("Pumpen und Antriebe"));
    w.standard(pumpen, QStringLiteral("Kreiselpumpe mit Motor"), QStringLiteral("Kreiselpumpe"), QStringLiteral("Mechanik"));
    w.standard(pumpen, QStringLiteral("Ventilator mit Motor"), QStringLiteral("Ventilator"), QStringLiteral("Mechanik"));
    w.standard(RootKatalo, QStringLiteral("Druckbehälter"), QStringLiteral("Behälter"), QStringLiteral("Schlosserei"));
    w.standard(RootKatalo, QStringLiteral("Absperrarmatur"), QStringLiteral("Armatur"), QStringLiteral("Mechanik"));
    w.standard(RootKatalo, QStringLiteral("Schaltschrank"), QStringLiteral("Schaltanlage"), QStringLiteral("Elektro"));

    addCatalogs(db);
    addUsers(db);
    addDemoRepairOrders(db, bezugsJahr);
    tx.commit();
}

}
