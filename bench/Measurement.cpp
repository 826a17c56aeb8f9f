#include "bench/Measurement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#endif

namespace brisk::bench {

namespace {

#ifdef _WIN32
constexpr bool kHasCoarseClock = true; // hundredths of a second
#else
constexpr bool kHasCoarseClock = false;
#endif
constexpr std::size_t kRounds = 11;
constexpr std::size_t kRoundsOfSlowWork = 5;                    // which takes a second and more
constexpr double kLeastSeconds = kHasCoarseClock ? 0.1 : 0.004; // of a round

double threadSeconds() {
#ifdef _WIN32
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + static_cast<double>(time.dwLowDateTime)) /
               1e7;
    };
    return seconds(kernel) + seconds(user);
#else
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
#endif
}

double seconds(const Work& work, std::size_t calls) {
    const double begin = threadSeconds();
    for (std::size_t call = 0; call < calls; ++call) {
        work();
    }
    return (threadSeconds() - begin) / static_cast<double>(calls);
}

// How many calls take long enough to be measured.
std::size_t enoughCalls(const Work& work) {
    for (std::size_t calls = 1;; calls *= 2) {
        const double total = seconds(work, calls) * static_cast<double>(calls);
        if (total >= kLeastSeconds / 2) {
            return total >= kLeastSeconds ? calls : 2 * calls;
        }
    }
}

std::size_t roundsFor(double secondsOfRound) {
    return secondsOfRound < 1 ? kRounds : kRoundsOfSlowWork;
}

double quantile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(std::llround(part * static_cast<double>(values.size() - 1)))];
}

std::string inUnits(double value, const std::string& unit) {
    char text[64];
    if (unit == "s") {
        std::snprintf(text, sizeof text, "%.4g us", value * 1e6);
    } else {
        std::snprintf(text, sizeof text, "%.4g %s", value, unit.c_str());
    }
    return text;
}

// A bar would end the table's cell.
std::string inCell(std::string text) {
    for (std::size_t bar = 0; (bar = text.find('|', bar)) != std::string::npos; bar += 2) {
        text.insert(bar, 1, '\\');
    }
    return text;
}

void printRow(const std::string& work, double product, const std::string& referenceName, double reference,
              const std::string& unit, std::vector<double> ratios, Bar bar) {
    const bool isFaster = bar.kind == Bar::Kind::TimesAsFast;
    if (isFaster) {
        for (double& ratio : ratios) {
            ratio = 1 / ratio;
        }
    }
    const double ratio = quantile(ratios, 0.5);
    const bool isMet = isFaster ? ratio >= bar.limit : ratio <= bar.limit;
    std::printf("| %s | %s | %s: %s | %.3g (%.3g to %.3g) | %s %g | %s |\n", inCell(work).c_str(),
                inUnits(product, unit).c_str(), referenceName.c_str(), inUnits(reference, unit).c_str(), ratio,
                quantile(ratios, 0.25), quantile(ratios, 0.75), isFaster ? "at least" : "at most", bar.limit,
                isMet ? "met" : "**not met**");
    std::fflush(stdout);
}

} // namespace

void printHead() {
    std::printf("| Work | Product | Reference | Ratio (quartiles) | Bar | |\n|---|---|---|---|---|---|\n");
}

void compare(const std::string& work, const Work& product, const std::string& referenceName, const Work& reference,
             Bar bar) {
    const std::size_t productCalls = enoughCalls(product);
    const std::size_t referenceCalls = enoughCalls(reference);
    std::vector<double> products;
    std::vector<double> references;
    std::vector<double> ratios;
    double secondsOfRound = 0;
    do {
        products.push_back(seconds(product, productCalls));
        references.push_back(seconds(reference, referenceCalls));
        ratios.push_back(products.back() / references.back());
        secondsOfRound = products.back() * static_cast<double>(productCalls) +
                         references.back() * static_cast<double>(referenceCalls);
    } while (ratios.size() < roundsFor(secondsOfRound));
    printRow(work, quantile(products, 0.5), referenceName, quantile(references, 0.5), "s", ratios, bar);
}

void printFigures(const std::string& work, double product, const std::string& referenceName, double reference,
                  const std::string& unit, Bar bar) {
    printRow(work, product, referenceName, reference, unit, {product / reference}, bar);
}

double secondsOf(const Work& work) {
    const std::size_t calls = enoughCalls(work);
    std::vector<double> times;
    do {
        times.push_back(seconds(work, calls));
    } while (times.size() < roundsFor(times.back() * static_cast<double>(calls)));
    return quantile(times, 0.5);
}

void printGrowthHead() {
    std::printf("| Work, and what grows | From | To | Smallest | Largest | Exponent | Bar | |\n");
    std::printf("|---|---|---|---|---|---|---|---|\n");
}

void printGrowth(const std::string& what, const std::vector<std::size_t>& sizes,
                 const std::function<double(std::size_t size)>& secondsAt) {
    constexpr double kBar = 1.1;
    std::vector<double> times;
    double x = 0;
    double y = 0;
    double xx = 0;
    double xy = 0;
    for (const std::size_t size : sizes) {
        times.push_back(secondsAt(size));
        const double logSize = std::log(static_cast<double>(size));
        const double logTime = std::log(times.back());
        x += logSize;
        y += logTime;
        xx += logSize * logSize;
        xy += logSize * logTime;
    }
    const auto count = static_cast<double>(sizes.size());
    const double exponent = (count * xy - x * y) / (count * xx - x * x);
    std::printf("| %s | %.0f | %.0f | %s | %s | %.2f | at most %g | %s |\n", what.c_str(),
                static_cast<double>(sizes.front()), static_cast<double>(sizes.back()),
                inUnits(times.front(), "s").c_str(), inUnits(times.back(), "s").c_str(), exponent, kBar,
                exponent <= kBar ? "met" : "**not met**");
    std::fflush(stdout);
}

} // namespace brisk::bench
