#include "bench/PatternReferences.h"

#include <cstddef>
#include <regex>
#include <stdexcept>

#include <boost/regex.hpp>

#ifdef BRISK_HAS_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

namespace brisk::bench {

namespace {

class StandardPattern : public PatternReference {
public:
    explicit StandardPattern(const std::string& key) : expression(key) {}
    bool search(const std::string& text) const override {
        std::smatch match;
        return std::regex_search(text, match, expression);
    }
    std::string replace(const std::string& text, const std::string& value) const override {
        return std::regex_replace(text, expression, "$1$99" + value + "$3");
    }

private:
    const std::regex expression;
};

class BoostPattern : public PatternReference {
public:
    explicit BoostPattern(const std::string& key) : expression(key) {}
    bool search(const std::string& text) const override {
        boost::smatch match;
        return boost::regex_search(text, match, expression);
    }
    std::string replace(const std::string& text, const std::string& value) const override {
        return boost::regex_replace(text, expression, "${1}" + value + "${3}");
    }

private:
    const boost::regex expression;
};

#ifdef BRISK_HAS_PCRE2
class PcrePattern : public PatternReference {
public:
    explicit PcrePattern(const std::string& key) {
        int error = 0;
        PCRE2_SIZE place = 0;
        code.reset(pcre2_compile(pointer(key), key.size(), PCRE2_NEVER_UTF, &error, &place, nullptr));
        if (!code || pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE) != 0) {
            throw std::runtime_error("PCRE2 does not take the key");
        }
        match.reset(pcre2_match_data_create_from_pattern(code.get(), nullptr));
    }
    bool search(const std::string& text) const override {
        return pcre2_match(code.get(), pointer(text), text.size(), 0, 0, match.get(), nullptr) > 0;
    }
    std::string replace(const std::string& text, const std::string& value) const override {
        const std::string format = "${1}" + value + "${3}";
        std::string output(text.size() + text.size() / 4, '\0');
        PCRE2_SIZE length = output.size();
        const int count =
            pcre2_substitute(code.get(), pointer(text), text.size(), 0,
                             PCRE2_SUBSTITUTE_GLOBAL | PCRE2_SUBSTITUTE_UNSET_EMPTY, match.get(), nullptr,
                             pointer(format), format.size(), reinterpret_cast<PCRE2_UCHAR*>(output.data()), &length);
        if (count < 0) {
            throw std::runtime_error("PCRE2 does not replace");
        }
        output.resize(length);
        return output;
    }

private:
    static PCRE2_SPTR pointer(const std::string& text) { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

    struct Free {
        void operator()(pcre2_code* freed) const { pcre2_code_free(freed); }
        void operator()(pcre2_match_data* freed) const { pcre2_match_data_free(freed); }
    };
    std::unique_ptr<pcre2_code, Free> code;
    std::unique_ptr<pcre2_match_data, Free> match;
};
#endif

} // namespace

std::unique_ptr<PatternReference> standardPattern(const std::string& key) {
    return std::make_unique<StandardPattern>(key);
}

std::unique_ptr<PatternReference> boostPattern(const std::string& key) {
    return std::make_unique<BoostPattern>(key);
}

std::unique_ptr<PatternReference> pcrePattern(const std::string& key) {
#ifdef BRISK_HAS_PCRE2
    return std::make_unique<PcrePattern>(key);
#else
    static_cast<void>(key);
    return nullptr;
#endif
}

} // namespace brisk::bench
