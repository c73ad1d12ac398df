#!/usr/bin/env python3
"""Kills `zol plan` at random moments and checks what it leaves behind.

Usage: bench/kill-plan.py [--build DIR] [--tries N] [--components N] [--lines N] [--seed S]

A plant is generated once (zolbench --data), then every try starts from that
data file without a monthly copy, starts `zol plan YEAR WEEK --yes` and kills
it with SIGKILL after a random time between 0 and the length of an
uninterrupted run, so kills land in the start, the monthly copy, the planning
and the commit. After each kill:
  - the data file passes PRAGMA integrity_check;
  - the planned week is all old (no orders, as before) or all new (exactly the
    orders of an uninterrupted run);
  - a monthly copy, if there is one, passes the integrity check and holds the
    week as it was before;
  - the next start plans the week (exit 0) and leaves no temporary file.
Prints one line per failed try and the figures as "name value unit".
"""
import argparse
import glob
import hashlib
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

YEAR, WEEK = "2026", "10"


def week_signature(path):
    con = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    try:
        integrity = con.execute("PRAGMA integrity_check").fetchone()[0]
        rows = con.execute(
            "SELECT TeIndex, Objekt, Anweisung, Intervall, Text FROM Auftrag WHERE Jahr = ? AND Woche = ?"
            " ORDER BY TeIndex, Objekt, Anweisung", (YEAR, WEEK)).fetchall()
    finally:
        con.close()
    digest = hashlib.sha256(repr(rows).encode()).hexdigest()
    return integrity, len(rows), digest


def run_plan(build, data, env):
    return subprocess.Popen([os.path.join(build, "zol"), "--data", data, "--user", "Admin", "plan", YEAR, WEEK,
                             "--yes"], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def fresh(base, data):
    for f in glob.glob(os.path.join(data, "*")):
        os.remove(f)
    shutil.copy(os.path.join(base, "ZOL.db"), os.path.join(data, "ZOL.db"))


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--build", default="build")
    ap.add_argument("--tries", type=int, default=50)
    ap.add_argument("--components", type=int, default=5000)
    ap.add_argument("--lines", type=int, default=50000)
    ap.add_argument("--seed", type=int, default=1)
    a = ap.parse_args()
    random.seed(a.seed)
    env = dict(os.environ, ZOL_PASSWORD="admin", QT_QPA_PLATFORM="offscreen")

    with tempfile.TemporaryDirectory() as tmp:
        base, data = os.path.join(tmp, "base"), os.path.join(tmp, "data")
        os.makedirs(base)
        os.makedirs(data)
        subprocess.run([os.path.join(a.build, "zolbench"), "--components", str(a.components), "--lines",
                        str(a.lines), "--data", base, "--generate-only"], check=True, stdout=subprocess.DEVNULL,
                       env=env)
        # The week starts unplanned, so that "old" and "new" differ.
        con = sqlite3.connect(os.path.join(base, "ZOL.db"))
        con.execute("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?", (YEAR, WEEK))
        con.commit()
        con.execute("PRAGMA wal_checkpoint(TRUNCATE)")
        con.close()
        for f in glob.glob(os.path.join(base, "ZOL_*")):
            os.remove(f)
        old = week_signature(os.path.join(base, "ZOL.db"))

        fresh(base, data)
        t0 = time.monotonic()
        rc = run_plan(a.build, data, env).wait()
        full = time.monotonic() - t0
        if rc != 0:
            sys.exit(f"an uninterrupted run ended with status {rc}")
        new = week_signature(os.path.join(data, "ZOL.db"))
        if new[1] == 0:
            sys.exit("the uninterrupted run planned nothing; choose another plant")

        survived = 0
        states = {"old": 0, "new": 0}
        for i in range(a.tries):
            fresh(base, data)
            delay = random.uniform(0, full)
            p = run_plan(a.build, data, env)
            time.sleep(delay)
            p.send_signal(signal.SIGKILL)
            p.wait()
            faults = []
            state = week_signature(os.path.join(data, "ZOL.db"))
            if state[0] != "ok":
                faults.append(f"integrity: {state[0]}")
            if state[1:] == old[1:]:
                states["old"] += 1
            elif state[1:] == new[1:]:
                states["new"] += 1
            else:
                faults.append(f"week neither old nor new: {state[1]} rows")
            for copy in glob.glob(os.path.join(data, "ZOL_??????.db")):
                c = week_signature(copy)
                if c[0] != "ok" or c[1:] != old[1:]:
                    faults.append(f"monthly copy: {c[0]}, {c[1]} rows")
            rc = run_plan(a.build, data, env).wait()
            if rc != 0:
                faults.append(f"next start ended with status {rc}")
            left = [f for f in os.listdir(data) if ".tmp-" in f]
            if left:
                faults.append(f"left behind: {left}")
            if week_signature(os.path.join(data, "ZOL.db"))[1:] != new[1:]:
                faults.append("next start did not plan the week")
            if faults:
                print(f"try {i + 1} (kill after {delay:.3f} s): " + "; ".join(faults))
            else:
                survived += 1

    print(f"kill_plan_full_run_s {full:.3f} s")
    print(f"kill_plan_tried {a.tries} kills")
    print(f"kill_plan_survived {survived} kills")
    print(f"kill_plan_week_old {states['old']} kills")
    print(f"kill_plan_week_new {states['new']} kills")
    return 0 if survived == a.tries else 1


if __name__ == "__main__":
    sys.exit(main())
