#include "server/demo/demo_goods.h"

#include <algorithm>
#include <cassert>
#include <iterator>

namespace orvane::server {
namespace {

constexpr DemoMeasure kMeasures[] = {
    {100, "брой", "piece", 1, false},
    {101, "чифт", "pair", 2, true},
    {102, "дузина", "dozen", 12, true},
    {103, "гросс", "gross", 144, true},
    {104, "десетица", "ten", 10, true},
    {105, "стотица", "hundred", 100, false},
    {106, "хилядарка", "thousand", 1000, false},
    {200, "грам", "gram", 1, false},
    {201, "килограм", "kilogram", 1000, false},
    {202, "тон", "tonne", 1000000, false},
    {203, "центнер", "quintal", 100000, false},
    {300, "милиметър", "millimetre", 1, false},
    {301, "сантиметър", "centimetre", 10, false},
    {302, "метър", "metre", 1000, false},
    {303, "километър", "kilometre", 1000000, false},
    {400, "милилитър", "millilitre", 1, false},
    {401, "литър", "litre", 1000, false},
    {402, "хектолитър", "hectolitre", 100000, false},
    {403, "кубически метър", "cubic metre", 1000000, false},
    {500, "кв. сантиметър", "square centimetre", 1, false},
    {501, "кв. метър", "square metre", 10000, false},
    {600, "минута", "minute", 1, false},
    {601, "час", "hour", 60, true},
    {602, "работен ден", "working day", 480, false},
    {700, "услуга", "service", 1, false},
    {701, "месец", "month", 1, false},
    {702, "година", "year", 12, true},
    {800, "лист", "sheet", 1, false},
    {801, "пакет 500 л.", "pack of 500", 500, false},
    {802, "кашон 5 пакета", "box of 5 packs", 2500, false},
    {900, "ват-час", "watt hour", 1, false},
    {901, "киловатчас", "kilowatt hour", 1000, false},
    {902, "мегаватчас", "megawatt hour", 1000000, false},
};

}  // namespace

std::span<const DemoMeasure> DemoMeasures() {
  return kMeasures;
}

const DemoMeasure& DemoMeasureOf(std::int16_t code) {
  const auto* found = std::find_if(std::begin(kMeasures), std::end(kMeasures),
                                   [&](const DemoMeasure& row) { return row.code == code; });
  assert(found != std::end(kMeasures));
  return *found;
}

}  // namespace orvane::server
