#include "mmutil.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstdarg>
#include <cstring>
#include <sstream>

// Character sets of the trimming helpers; the configuration grammar depends
// on them, so the left and right sets differ on purpose.
static const char* const kLeftBlanks = " \t";
static const char* const kRightBlanks = " \t\n\r";
static const char* const kLeftQuotes = "\t \"'";
static const char* const kRightQuotes = "\t\n\r \"'";

static std::string& trim_left_of(std::string& s, const char* set)
{
    s.erase(0, s.find_first_not_of(set));
    return s;
}

static std::string& trim_right_of(std::string& s, const char* set)
{
    std::string::size_type last = s.find_last_not_of(set);
    s.erase(last == std::string::npos ? 0 : last + 1);
    return s;
}

std::string& triml(std::string& s) { return trim_left_of(s, kLeftBlanks); }
std::string& trimr(std::string& s) { return trim_right_of(s, kRightBlanks); }
std::string& trim(std::string& s) { return trimr(triml(s)); }
std::string trimmed(std::string s) { return trim(s); }
std::string& sg_triml(std::string& s) { return trim_left_of(s, kLeftQuotes); }
std::string& sg_trimr(std::string& s) { return trim_right_of(s, kRightQuotes); }

std::string& sg_trim(std::string& s)
{
    sg_trimr(sg_triml(s));
    s.erase(std::remove(s.begin(), s.end(), ' '), s.end());
    return s;
}

char* c_triml(char* s)
{
    if (!s) return s;
    size_t skip = strspn(s, kLeftBlanks);
    if (skip) memmove(s, s + skip, strlen(s + skip) + 1);
    return s;
}

char* c_trimr(char* s)
{
    if (!s) return s;
    // The first character always stays, even when it is a blank.
    size_t len = strlen(s);
    while (len > 1 && strchr(kRightBlanks, s[len - 1])) s[--len] = '\0';
    return s;
}

char* c_trim(char* s) { return c_trimr(c_triml(s)); }

bool iequals(const std::string& a, const std::string& b)
{
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (toupper(static_cast<unsigned char>(a[i])) != toupper(static_cast<unsigned char>(b[i])))
            return false;
    }
    return true;
}

std::string RemoveWhiteSpaceUnderscore(const std::string& s)
{
    std::string out;
    out.reserve(s.size());
    for (char c : s)
        if (c != '_' && c != ' ') out += c;
    return out;
}

void ReplaceSlashWithUnderscore(char* s)
{
    if (!s) return;
    for (; *s; ++s)
        if (*s == '/' || *s == '\\') *s = '_';
}

std::string remove_filename_extension(const std::string& s)
{
    std::string::size_type dot = s.rfind('.');
    return dot == std::string::npos ? s : s.substr(0, dot);
}

bool isAlphabetical(std::string s)
{
    if (s.empty()) return false;
    for (char c : s)
        if (!isalpha(static_cast<unsigned char>(c))) return false;
    return true;
}

int tokenize(std::vector<std::string>& out, const char* text, const char* delimiters)
{
    out.clear();
    if (!text || !delimiters) return 0;
    const char* p = text;
    while (*p) {
        p += strspn(p, delimiters);
        size_t len = strcspn(p, delimiters);
        if (len) out.emplace_back(p, len);
        p += len;
    }
    return 1;
}

std::vector<std::string> split_string(std::string s)
{
    std::istringstream in(s);
    std::vector<std::string> words;
    std::string w;
    while (in >> w) words.push_back(w);
    return words;
}

char* strhed(char** cursor)
{
    static const char* const white = " \t\n";
    if (!cursor || !*cursor) return nullptr;
    char* word = *cursor + strspn(*cursor, white);
    char* end = word + strcspn(word, white);
    char* rest = end;
    if (*end) {
        *end = '\0';
        rest = end + 1 + strspn(end + 1, white);
        size_t len = strlen(rest);
        while (len > 0 && strchr(white, rest[len - 1])) rest[--len] = '\0';
    }
    *cursor = rest;
    return word;
}

void morphNumericString(char* number, int decimals)
{
    if (!number) return;
    char* dot = strchr(number, '.');
    if (!dot) return;
    if (decimals < 0) decimals = 0;
    if (strlen(dot + 1) > static_cast<size_t>(decimals)) dot[1 + decimals] = '\0';
    size_t len = strlen(number);
    while (number + len - 1 > dot && number[len - 1] == '0') number[--len] = '\0';
    if (number + len - 1 == dot) *dot = '\0';
}

// ---- case-insensitive traits ---------------------------------------------

static int lower(char c) { return tolower(static_cast<unsigned char>(c)); }

bool ci_char_traits::eq(char a, char b) { return lower(a) == lower(b); }
bool ci_char_traits::ne(char a, char b) { return lower(a) != lower(b); }
bool ci_char_traits::lt(char a, char b) { return lower(a) < lower(b); }

int ci_char_traits::compare(const char* a, const char* b, size_t n)
{
    for (size_t i = 0; i < n; ++i) {
        if (lower(a[i]) != lower(b[i])) return lower(a[i]) < lower(b[i]) ? -1 : 1;
    }
    return 0;
}

const char* ci_char_traits::find(const char* s, int n, char c)
{
    for (int i = 0; i < n; ++i)
        if (lower(s[i]) == lower(c)) return s + i;
    return nullptr;
}

std::string format_string(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    int n = vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string out;
    if (n > 0) {
        out.resize(n + 1);
        vsnprintf(&out[0], out.size(), fmt, args);
        out.resize(n);
    }
    va_end(args);
    return out;
}

int read_int_clamped(const char* text, char** end)
{
    long value = strtol(text, end, 10);
    if (value > INT_MAX) return INT_MAX;
    if (value < INT_MIN) return INT_MIN;
    return static_cast<int>(value);
}
