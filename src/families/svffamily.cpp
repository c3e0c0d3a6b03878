#include "families/svffamily.h"

#include <algorithm>

namespace keld2 {

namespace {

constexpr std::array<RowTotal, 5> totals80{
    {{16160, 80}, {30240, 80}, {63360, 80}, {101844, 82}, {141696, 82}}};
constexpr std::array<RowTotal, 1> totals83{{{141696, 82}}};
constexpr std::array<RowTotal, 10> totals84{{{8160, 102},
                                             {17200, 100},
                                             {18880, 118},
                                             {32160, 134},
                                             {33440, 95},
                                             {35600, 100},
                                             {42880, 134},
                                             {48000, 150},
                                             {74000, 100},
                                             {75840, 158}}};
constexpr std::array<RowTotal, 9> totals87{{{15074, 93},
                                            {15464, 93},
                                            {17019, 93},
                                            {30746, 93},
                                            {31440, 93},
                                            {33480, 93},
                                            {62840, 93},
                                            {131770, 93},
                                            {282744, 93}}};
constexpr std::array<RowTotal, 2> totals89{{{7664, 1916}, {30608, 1980}}};
constexpr std::array<RowTotal, 6> totals90{
    {{12275, 48}, {25809, 96}, {55341, 80}, {123249, 96}, {209356, 120}, {296403, 160}}};
constexpr std::array<RowTotal, 6> totals92{
    {{11529, 52}, {24481, 104}, {52009, 104}, {115869, 208}, {189969, 208}, {278721, 208}}};
constexpr std::array<RowTotal, 4> totals50{{{16160, 80}, {30240, 80}, {63360, 80}, {101844, 82}}};

constexpr std::array<RowWidth, 32> widths80{
    {{7664, 16},     {8160, 80},     {12275, 260},   {15074, 183},   {15464, 183},   {16160, 202},
     {17019, 183},   {17200, 172},   {18880, 160},   {25809, 274},   {30240, 378},   {30608, 32},
     {30746, 360},   {31440, 360},   {32160, 240},   {33440, 352},   {33480, 360},   {35600, 356},
     {42880, 320},   {48000, 320},   {55341, 752},   {62840, 716},   {63360, 792},   {74000, 740},
     {75840, 480},   {101844, 1242}, {123249, 1364}, {131770, 1574}, {141696, 1728}, {209356, 1868},
     {282744, 3144}, {296403, 1980}}};
constexpr std::array<RowWidth, 8> widths92{{{11529, 114},
                                            {23328, 34},
                                            {24481, 123},
                                            {46656, 50},
                                            {52009, 266},
                                            {115869, 304},
                                            {189969, 507},
                                            {278721, 756}}};
constexpr std::array<RowWidth, 3> widths94{{{23328, 34}, {46656, 50}, {93312, 82}}};

constexpr RowComparison rowverify{.widths = widths80};
constexpr RowComparison rowverify87{.widths = widths80, .tolerant = true};
constexpr RowComparison rowverify92{.widths = widths92, .framelength = 15};
constexpr RowComparison bitverify94{.widths = widths94, .bitwise = true};

constexpr std::array<std::uint8_t, 3> families80{80, 81, 82};
constexpr std::array<std::uint8_t, 1> families83{83};
constexpr std::array<std::uint8_t, 3> families84{84, 85, 86};
constexpr std::array<std::uint8_t, 2> families87{87, 88};
constexpr std::array<std::uint8_t, 1> families89{89};
constexpr std::array<std::uint8_t, 2> families90{90, 91};
constexpr std::array<std::uint8_t, 2> families92{92, 93};
constexpr std::array<std::uint8_t, 2> families94{94, 95};
constexpr std::array<std::uint8_t, 1> families50{50};

constinit const std::array procedures{
    SvfProcedure{.families = families80,
                 .reset = &svfreset80,
                 .sdrrules = &sdrrules80,
                 .totals = totals80,
                 .comparison = &rowverify},
    SvfProcedure{.families = families83,
                 .reset = &svfreset80,
                 .sdrrules = &sdrrules80,
                 .totals = totals83,
                 .comparison = &rowverify,
                 .interim = SvfProcedure::Interim::half},
    SvfProcedure{.families = families84,
                 .reset = &svfreset84,
                 .sdrrules = &sdrrules80,
                 .totals = totals84,
                 .comparison = &rowverify},
    SvfProcedure{.families = families87,
                 .reset = &svfreset87,
                 .sdrrules = &sdrrules80,
                 .codecheck = {.rows = CodeCheck::Rows::ownwidth},
                 .totals = totals87,
                 .comparison = &rowverify87},
    SvfProcedure{.families = families89,
                 .reset = &svfreset87,
                 .sdrrules = &sdrrules80,
                 .codecheck = {.rows = CodeCheck::Rows::firstten, .rowcount = 10},
                 .linelimit = 40000,
                 .totals = totals89,
                 .firstrow = 10,
                 .leastrowcount = 11,
                 .comparison = &rowverify},
    SvfProcedure{.families = families90,
                 .reset = &svfreset90,
                 .sdrrules = &sdrrules80,
                 .totals = totals90,
                 .comparison = &rowverify},
    SvfProcedure{.families = families92,
                 .reset = &svfreset90,
                 .sdrrules = &sdrrules92,
                 .linelimit = 15000,
                 .totals = totals92,
                 .comparison = &rowverify92,
                 .interim = SvfProcedure::Interim::once208},
    SvfProcedure{.families = families94,
                 .reset = &svfreset94,
                 .sdrrules = &sdrrules94,
                 .sdr95 = true,
                 .linelimit = 15000,
                 .totals = {},
                 .comparison = &bitverify94,
                 .interim = SvfProcedure::Interim::rolling},
    SvfProcedure{.families = families50,
                 .reset = &svfreset80,
                 .sdrrules = &sdrrules50,
                 .totals = totals50,
                 .comparison = &rowverify,
                 .progressbylines = true},
};

template <typename Rows>
auto rowof(Rows rows, std::int32_t fuses) {
    return std::ranges::find_if(rows, [fuses](const auto& row) { return row.fuses == fuses; });
}

}  // namespace

std::span<const SvfProcedure> svfprocedures() { return procedures; }

const SvfProcedure* findsvfprocedure(std::uint8_t family) {
    for (const SvfProcedure& procedure : procedures)
        if (std::ranges::find(procedure.families, family) != procedure.families.end())
            return &procedure;
    return nullptr;
}

std::int32_t rowtotal(const SvfProcedure& procedure, std::int32_t fuses) {
    const auto row = rowof(procedure.totals, fuses);
    return row != procedure.totals.end() ? row->rows : 0;
}

std::int32_t rowwidth(const RowComparison& comparison, std::int32_t fuses) {
    const auto row = rowof(comparison.widths, fuses);
    return row != comparison.widths.end() ? row->bits : 0;
}

}  // namespace keld2
