#include "kem/c.h"

#include <cmath>
#include <cstring>
#include <memory>

#include "support/records.h"

using namespace kem::test;

namespace {

using Handle = std::unique_ptr<kem_record, decltype(&kem_record_free)>;
Handle Own(kem_record* record) { return {record, kem_record_free}; }

// As many arguments as a text of kem_operations has, optional ones left out: the coordinates of its samples in
// turn.
std::vector<double> ArgumentsOf(std::string_view text) {
  const auto spaces = std::count(text.begin(), text.end(), ' ');
  std::vector<double> arguments(static_cast<std::size_t>(spaces - std::count(text.begin(), text.end(), '[')));
  for (std::size_t k = 0; k < arguments.size(); ++k) arguments[k] = static_cast<double>(k);
  return arguments;
}

}  // namespace

TEST_CASE("c: every operation gives a record or a sentence, and takes no wrong arguments") {
  Floats x(40), z(80);
  for (std::size_t k = 0; k < z.size(); ++k) z[k] = static_cast<float>(k * k);
  for (std::size_t k = 0; k < x.size(); ++k) x[k] = static_cast<float>(k);
  kem_error error;
  const Handle curve = Own(kem_curve(z.data(), x.data(), x.size(), &error));
  const Handle grid = Own(kem_grid(z.data(), x.data(), x.size(), x.data(), 2, &error));
  REQUIRE((curve && grid && kem_count_x(grid.get()) == 40 && kem_count_y(grid.get()) == 2));
  Floats copy(z.size());
  kem_copy_values(grid.get(), copy.data());
  CHECK(copy == z);
  for (std::size_t k = 0; kem_operations(k); ++k) {
    const std::string_view text = kem_operations(k);
    const std::string name(text.substr(0, text.find(' ')));
    CAPTURE(name);
    const bool ofTwo = text.ends_with(" record") || text.ends_with(" [number]");
    const auto arguments = ofTwo ? std::vector<double>() : ArgumentsOf(text);
    for (const kem_record* r : {curve.get(), grid.get()}) {
      const Handle made =
          Own(kem_apply(r, name.c_str(), arguments.data(), arguments.size(), ofTwo ? r : nullptr, &error));
      CHECK((made ? error.code == KEM_OK : error.code == KEM_DOES_NOT_FIT && error.sentence[0]));
      const std::vector<double> many(9);
      CHECK(!Own(kem_apply(r, name.c_str(), many.data(), many.size(), nullptr, &error)));
      CHECK(error.code == KEM_WRONG_ARGUMENT);
    }
  }
}

TEST_CASE("c: what is wrong has a code and a sentence, and null does no harm") {
  kem_error error;
  CHECK((!kem_open("no/such/file", 1, &error) && error.code == KEM_NOT_FOUND));
  CHECK(std::string(error.sentence) == "no/such/file: no such file");
  const std::string longest(3000, 'a');
  CHECK((!kem_open(("\xc3\xa9" + longest).c_str(), 1, &error) &&
         std::strlen(error.sentence) == sizeof error.sentence - 1));
  CHECK((!kem_open(nullptr, 1, &error) && error.code == KEM_WRONG_ARGUMENT));
  CHECK(
      (!kem_to_record(nullptr, KEM_REAL, nullptr) && !kem_load(nullptr, 1, nullptr) && !kem_items_of("", nullptr)));
  CHECK((std::isnan(kem_measure(nullptr, "at", nullptr, 0, &error)) && error.code == KEM_WRONG_ARGUMENT));
  CHECK((kem_rank(nullptr) == 0 && !*kem_axis_unit(nullptr, 3) && std::isnan(kem_axis_at(nullptr, 0, 0))));
  const float one = 1;
  CHECK((!kem_grid(&one, &one, ~std::size_t{0}, &one, 2, &error) && error.code == KEM_OUT_OF_MEMORY));
  CHECK(kem_write(nullptr, "a.dx", nullptr, nullptr) == KEM_WRONG_ARGUMENT);
  kem_dataset_free(nullptr);
  kem_items_free(nullptr);
}
