// From times to the table of ratios.
#pragma once
#include <benchmark/benchmark.h>
#include <map>
#include <string>

namespace bench {

using Times = std::map<std::string, double>; // seconds, the least of all repetitions

class Collector : public benchmark::ConsoleReporter {
public:
    Collector() : ConsoleReporter(OO_Tabular) {}
    bool ReportContext(const Context&) override { return true; } // no word on the machine
    void ReportRuns(const std::vector<Run>& runs) override;
    const Times& least() const { return least_; }

private:
    Times least_;
};

// One line a ratio, as Markdown. Ratios whose times weren't measured (a filter) are left out.
void print_ratios(const Times& times);

} // namespace bench
