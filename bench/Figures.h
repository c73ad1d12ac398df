#pragma once
// The figures of zolbench: one line "name value unit" each, so runs compare line by line.
#include <QByteArray>
#include <QFile>
#include <cstdio>
#include <ctime>

namespace zolbench {

inline void figure(const char *name, double value, const char *unit, int decimals = 3)
{
    std::printf("%s %.*f %s\n", name, decimals, value, unit);
    std::fflush(stdout);
}

inline void figure(const QByteArray &name, double value, const char *unit, int decimals = 3)
{
    figure(name.constData(), value, unit, decimals);
}

// CPU time of the process: the machine may be shared, wall time alone misleads.
inline double cpuSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec / 1e9;
}

// The most memory the process has held so far.
inline double peakRssMb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return -1;
}

}
