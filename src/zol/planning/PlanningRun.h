#pragma once
#include "zol/core/Session.h"
#include <QString>
#include <functional>

namespace zol {

struct PlanResult {
    enum class Outcome {
        Planned,    // the week is planned (the old plan of the week replaced)
        Refused,    // stopped by a rule, nothing changed
        Declined,   // a question answered No, nothing changed
        Fault,      // a fault ended the run; the data are as before it
    };
    enum class Focus { None, Jahr, Woche };

    Outcome outcome = Outcome::Refused;
    Focus focus = Focus::None;   // the field a refusal sends the user to
    QString jahr;                // year and week as the run formatted them
    QString woche;
    int count = 0;               // rows written, maintenance-free rows included
};

// The planning run: writes one Auftrag row for every work instruction of the
// plant that is due in the given week (week "00": the short-term orders of the
// year). It asks and refuses through ZeigeMeldung; the whole run is one
// transaction, so the old plan of the week is replaced only by a complete new one.
class PlanningRun {
public:
    explicit PlanningRun(Session &session) : m_session(session) {}

    std::function<void(int done, int total)> onProgress;
    std::function<void(const QString &text)> onStatus;   // the status line (lblTitel)

    PlanResult run(const QString &jahr, const QString &woche);

    // Status line texts.
    static QString statusPlanning(const QString &jahr, const QString &woche);
    static QString statusDone(int count, bool shortTerm);

private:
    void progress(int done, int total) { if (onProgress) onProgress(done, total); }
    void status(const QString &text) { if (onStatus) onStatus(text); }
    int plan(int jahr, int woche, const QString &jahrText, const QString &wocheText, PlanResult &result);

    Session &m_session;
};

}
