#ifndef VESKA_MMUTIL_H
#define VESKA_MMUTIL_H

// Numerical and text utilities shared by every unit: random numbers,
// small linear algebra, integration and regression, text, file and
// output helpers. Free functions in the global namespace.

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "fatal.h"

// ---- random numbers --------------------------------------------------
double ran2(long* idum);
double randUniform();
void init_random_seed();
double randGaussian();
double randExponential();
int select_reaction(double* rates, int n, double r, double total);
// Puts the process-wide generator back to its starting state (seed 1000,
// second generator 123456789, empty shuffle table, no cached Gaussian).
void ran2_reset_state();

// ---- small linear algebra --------------------------------------------
void mat_vec_mul(double a[3][3], double* x, double* y);
void mat_vec_mul_n(double a[3][3], double (*x)[3], double (*y)[3], int n);
void mat_mat_mul_nxn(double** a, double** b, double** c, int n);
double det(double a[3][3]);
void invert(double a[3][3], double b[3][3]);
void transpose_matrix(double a[3][3]);
void transpose_matrix(double** a, int n);
double get_magnitude(double* x);
double get_dot(double* x, double* y);
double anint(double x);
void jacobi_nr(double a[][3], int n, double* d, double v[][3], int& nrot);
void eigsrt_nr(double* d, double v[][3], int n);

// ---- integration and regression --------------------------------------
double rk4_one(double x, double y, double h, double (*f)(double, double));
// f returns a new[] array of n derivatives, which rk4_vec delete[]s; the
// result is a new[] array that belongs to the caller.
double* rk4_vec(double x, int n, double* y, double h, double* (*f)(double, int, double*));
int LinearRegression(double* x, double* y, int n, double* a, double* b, double* s);

// ---- text helpers ----------------------------------------------------
std::string& triml(std::string& s);
std::string& trimr(std::string& s);
std::string& trim(std::string& s);
// A trimmed copy, for callers that keep the original.
std::string trimmed(std::string s);
std::string& sg_triml(std::string& s);
std::string& sg_trimr(std::string& s);
std::string& sg_trim(std::string& s);
char* c_triml(char* s);
char* c_trimr(char* s);
char* c_trim(char* s);
bool iequals(const std::string& a, const std::string& b);
std::string RemoveWhiteSpaceUnderscore(const std::string& s);
void ReplaceSlashWithUnderscore(char* s);
std::string remove_filename_extension(const std::string& s);
bool isAlphabetical(std::string s);
int tokenize(std::vector<std::string>& out, const char* text, const char* delimiters);
std::vector<std::string> split_string(std::string s);
char* strhed(char** cursor);
void morphNumericString(char* number, int decimals);
// printf-style formatting into a string of whatever length it needs.
std::string format_string(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
// Base-10 integer at the start of `text` (leading blanks skipped, no digits
// gives 0), clamped to the int range; `end` as strtol sets it.
int read_int_clamped(const char* text, char** end = nullptr);

// Case-insensitive character traits (characters compared after tolower).
struct ci_char_traits : public std::char_traits<char> {
    static bool eq(char a, char b);
    static bool ne(char a, char b);
    static bool lt(char a, char b);
    static int compare(const char* a, const char* b, size_t n);
    static const char* find(const char* s, int n, char c);
};
typedef std::basic_string<char, ci_char_traits> ci_string;

// ---- file and directory helpers --------------------------------------
void create_directory(const char* path);
int dir_exists(const char* path);
bool fileExist(const char* path);
int file_exists(const char* path);
int backup_file(const char* path);
int count_lines(const char* path);
void get_workdir(std::string& out);
std::vector<std::string> globFileVector(const std::string& pattern);
int get_date(int* month, int* day, int* year);
// Writes `text` to `path` in one go, so that a file is written whole or not
// at all. Returns WRITE_OK, WRITE_OPEN_FAILED (nothing written) or
// WRITE_FAILED (writing or closing failed; a partial regular file is removed).
enum { WRITE_OK = 0, WRITE_OPEN_FAILED = 1, WRITE_FAILED = 2 };
int write_text_file(const char* path, const std::string& text);
// Reads every line of a text file; a directory counts as unreadable. With
// `keep_line_ends` each line keeps its line feed (the last line has none
// when the file does not end in one). Returns false when it cannot be read.
bool read_text_lines(const char* path, std::vector<std::string>& lines, bool keep_line_ends);

// ---- numeric output --------------------------------------------------
void output_matrix(double** m, int n, int per_block, const char* path);
void output_vector(double* v, int n, int per_line, const char* path);
void output_vvector(std::vector<std::vector<double>> columns, const char* path);

// ---- index sorts -----------------------------------------------------
void quickSort_i(int* keys, int* index, int n);
void q_sort(int* keys, int* index, int left, int right);
void quickSort_d(double* keys, int* index, int n);
void q_sort2(double* keys, int* index, int left, int right);
void swap_int(int* a, int* b);
void swap_dbl(double* a, double* b);

#endif
