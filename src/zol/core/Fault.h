#pragma once
#include <QString>
#include <exception>

namespace zol {

// Fault numbers the rules react to. They keep the numbers users and the
// legacy documentation know.
namespace FaultNo {
constexpr int NoCurrentRecord = 3021;
constexpr int KeyExists = 3022;
constexpr int FileNotFound = 3024;
constexpr int InvalidPath = 3044;
constexpr int FileInUse = 3045;
constexpr int TableMissing = 3078;
constexpr int NotADatabase = 3343;
constexpr int CannotWrite = 3051;
constexpr int General = 3000;
}

// A fault ends the action it happens in; the data stay as they were before
// the action (every write of several rows is one transaction).
class Fault : public std::exception {
public:
    Fault(int number, QString description) : m_number(number), m_description(std::move(description)),
        m_what(m_description.toUtf8()) {}
    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_description;
    QByteArray m_what;
};

}
