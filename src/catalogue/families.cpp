#include "catalogue/families.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace lotmere {
namespace {

using enum AttributeTable;
using enum ShapeSet;

// Sets Four and Three, and the families of set Six whose groups may hold five numbers or only four.
constexpr ShapeBounds kAll{6, 1};
constexpr ShapeBounds kFive{5, 1};
constexpr ShapeBounds kFour{4, 2};

constexpr Family kFamilies[] = {
    {"尾数形式", 37, 4000, 4019, first, "尾", 0, 10, 10, six, kFour, "尾数形式", 0, 0, "0-2,4",
     "个位数相同的号码为一组，共 10 组", "尾数设置"},
    {"间距九", 38, 4020, 4039, first, "九", 0, 10, 10, six, kFour, "间距九", 2, 1, "0-2,4",
     "相差 9 的倍数的号码为一组，如 01、10、19，共 9 组", "间距九"},
    {"间距七", 39, 4040, 4059, first, "七", 0, 10, 10, six, kFive, "间距七", 1, 1, "0-2,4-5",
     "相差 7 的倍数的号码为一组，如 01、08、15，共 7 组", "间距七"},
    {"间距十一", 40, 4060, 4079, first, "十一", 0, 11, 11, six, kFour, "间距十一", 3, 1, "0-2",
     "相差 11 的倍数的号码为一组，如 01、12、23，共 11 组", "间距十一"},
    {"间距十二", 41, 4050, 4069, second, "间距十二", 0, 12, 12, six, kFour, "间距十二", 31, 1, "0-2",
     "相差 12 的倍数的号码为一组，如 01、13、25，共 12 组", "间距十二"},
    {"间距八", 43, 4090, 4109, first, "八", 0, 10, 10, six, kFive, "间距八", 5, 1, "0-2,4-5",
     "相差 8 的倍数的号码为一组，如 01、09、17，共 8 组", "间距八"},
    {"间距四", 45, 4130, 4149, first, "四", 0, 4, 4, four, kAll, "间距四", 8, 1, "0-3,5-6",
     "相差 4 的倍数的号码为一组，如 01、05、09，共 4 组", "间距四"},
    {"区间单双七分组", 42, 4070, 4089, first, "七分组", 0, 10, 10, six, kFive, "七分组", 6, 1, "0-2,4-5",
     "01-10、11-20、21-30 各按单双分成两组，31-33 自成一组，共七组", "区间单双七分组"},
    {"大小尾七分组", 44, 4110, 4129, first, "尾七分组", 0, 10, 10, six, kFive, "大小尾七分组", 7, 1,
     "0-2,4-5", "01-10、11-20、21-30 各按小尾（0-4）和大尾（5-9）分成两组，31-33 自成一组，共七组",
     "大小尾七分组"},
    {"间距3", 46, 4150, 4159, second, "间距三", 0, 3, 3, three, kAll, "间距3", 9, 1, "0-4",
     "相差 3 的倍数的号码为一组，如 01、04、07，共 3 组", "间距3"},
    {"间距6", 47, 4160, 4169, second, "间距六", 0, 6, 6, six, kFive, "间距6", 10, 1, "1-5",
     "相差 6 的倍数的号码为一组，如 01、07、13，共 6 组", "间距6"},
    {"和数33", 48, 4170, 4179, first, "和数三三", 0, 17, 17, six, kFour, "和数33", 11, 1, "0-1",
     "相加等于 33 的两个号码为一组，如 01 和 32；没有配对的号码自成一组，共 17 组", "和数33"},
    {"和数34", 49, 4180, 4189, first, "和数三四", 0, 17, 17, six, kFour, "和数34", 12, 1, "0-1",
     "相加等于 34 的两个号码为一组，如 01 和 33；没有配对的号码自成一组，共 17 组", "和数34"},
    {"和数35", 50, 4190, 4199, first, "和数三五", 0, 17, 17, six, kFour, "和数35", 13, 1, "0-1",
     "相加等于 35 的两个号码为一组，如 02 和 33；没有配对的号码自成一组，共 17 组", "和数35"},
    {"奇偶连", 51, 4200, 4209, first, "奇偶连", 0, 17, 17, six, kFour, "奇偶连", 14, 1, "0-1",
     "01 和 02、03 和 04……相邻的奇数和偶数为一组，33 自成一组，共 17 组", "奇偶连"},
    {"偶奇连", 52, 4210, 4219, first, "偶奇连", 0, 17, 17, six, kFour, "偶奇连", 15, 1, "0-1",
     "02 和 03、04 和 05……相邻的偶数和奇数为一组，01 自成一组，共 17 组", "偶奇连"},
    {"等差16组", 53, 4220, 4229, first, "等差16组", 0, 17, 17, six, kFour, "等差16组", 16, 1, "0-1",
     "相差 16 的两个号码为一组，如 01 和 17；33 自成一组，共 17 组", "等差16组"},
    {"等差17组", 54, 4230, 4239, first, "等差17组", 0, 17, 17, six, kFour, "等差17组", 17, 1, "0-1",
     "相差 17 的两个号码为一组，如 01 和 18；17 自成一组，共 17 组", "等差17组"},
    {"间距11链", 55, 4240, 4249, first, "间距11链", 0, 17, 17, six, kFour, "间距11链", 18, 1, "0-1",
     "把 01、12、23、02、13、24……每隔 11 个数的号码连成一条链，两个数一组，共 17 组", "间距11链"},
    {"生肖链", 56, 4250, 4259, second, "生肖链", 0, 17, 17, six, kFour, "生肖链", 19, 1, "0-1",
     "把 01、13、25、02、14、26……每隔 12 个数的号码连成一条链，两个数一组，共 17 组", "生肖链"},
    {"四数八分自然段", 57, 4260, 4269, second, "四数八分自然段", 0, 8, 8, six, kFive, "四数八分自然段", 20, 1,
     "0-2,4-5", "从 01 起每 4 个相邻的号码为一段，33 归入最后一段，共 8 段", "4数8分自然段"},
    {"八数四分自然段", 58, 4270, 4279, second, "八数四分自然段", 0, 4, 4, four, kAll, "八数四分自然段", 21, 1,
     "0-3,5-6", "从 01 起每 8 个相邻的号码为一段，33 归入最后一段，共 4 段", "8数4分自然段"},
    {"11数3分自然段", 59, 4280, 4289, second, "十一数三分自然段", 0, 3, 3, three, kAll, "", -1, 1, "0-4",
     "从 01 起每 11 个相邻的号码为一段，共 3 段", "11数3分自然段"},
    {"三波排异", 60, 4300, 4309, second, "三波排异", 0, 17, 17, six, kFour, "三波排异", 22, 1, "0-1",
     "红波、蓝波、绿波的号码轮流各取一个排成一列，两个数一组，共 17 组", "三波排异"},
    {"区间排异", 61, 4310, 4319, second, "区间排异", 0, 17, 17, six, kFour, "区间排异", 23, 1, "0-1",
     "01-10、11-20、21-30、31-33 四段的号码轮流各取一个排成一列，两个数一组，共 17 组", "区间排异"},
    {"间距5", 66, 5020, 5039, second, "间距五", 0, 5, 5, six, kFive, "间距5", 24, 1, "1-5",
     "相差 5 的倍数的号码为一组，如 01、06、11，共 5 组"},
    {"间距10", 67, 5040, 5059, second, "间距十", 0, 10, 10, six, kFour, "间距10", 25, 1, "0-2,4",
     "相差 10 的倍数的号码为一组，如 01、11、21，共 10 组"},
    {"四区间", 68, 5060, 5079, first, "区间", 1, 4, 4, four, kAll, "四区间", 26, 1, "0-6",
     "“划分区间”中的四个区间各为一组"},
    {"三波组", 69, 5080, 5099, second, "三波组", 0, 3, 3, three, kAll, "三波组", 27, 1, "0-4",
     "红波、蓝波、绿波各为一组"},
    {"大小奇偶组", 70, 5100, 5119, second, "大小奇偶组", 0, 4, 4, four, kAll, "大小奇偶组", 28, 1, "0-3,5-6",
     "大奇、大偶、小奇、小偶四组，17 起为大"},
    {"双尾5分组", 71, 5120, 5139, second, "双尾5分组", 0, 5, 5, six, kFive, "双尾5分组", 29, 1, "1-5,7",
     "个位数 0-1、2-3、4-5、6-7、8-9 各为一组，共 5 组"},
    {"大小奇偶尾", 72, 5140, 5159, second, "大小奇偶尾", 0, 4, 4, four, kAll, "大小奇偶尾", 30, 1, "0-3,5-6",
     "个位数的大奇、大偶、小奇、小偶四组，5 起为大"},
    {"间距12三分组", 73, 5000, 5019, first, "十二", 0, 3, 12, three, kAll, "间距十二3分组", 4, 1, "0-4",
     "从 01 起每 12 个号码一轮，每轮的前、中、后 4 个各归一组，共 3 组"},
};

constexpr std::string_view kSix[] = {"1,1,1,1,1,1", "2,1,1,1,1", "2,2,1,1", "2,2,2", "3,1,1,1",
                                     "3,2,1",       "3,3",       "4,1,1",   "4,2",   "5,1"};
constexpr std::string_view kFourTexts[] = {"2,2,1,1", "2,2,2", "3,1,1,1", "3,2,1", "3,3",
                                           "4,1,1",   "4,2",   "5,1",     "6"};
constexpr std::string_view kThreeTexts[] = {"2,2,2", "3,2,1", "3,3", "4,1,1", "4,2", "5,1", "6"};

// Six reds make each pair (largest, groups hit) in one way only: the number of a pair is the place of the
// text that has it.
using ShapeLookup = std::array<std::array<std::int8_t, 7>, 7>;

constexpr ShapeLookup makeLookup(std::span<const std::string_view> texts) {
  ShapeLookup lookup{};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const int largest = texts[i].front() - '0';
    const int groups = static_cast<int>(texts[i].size() + 1) / 2;
    lookup[largest][groups] = static_cast<std::int8_t>(i);
  }
  return lookup;
}

constexpr ShapeLookup kLookups[] = {makeLookup(kSix), makeLookup(kFourTexts), makeLookup(kThreeTexts)};

}  // namespace

std::span<const std::string_view> shapeTexts(ShapeSet set) {
  switch (set) {
    case four:
      return kFourTexts;
    case three:
      return kThreeTexts;
    case six:
      break;
  }
  return kSix;
}

std::span<const Family> families() { return kFamilies; }

const Family& familyOfTurn(int turn) {
  return *std::find_if(std::begin(kFamilies), std::end(kFamilies),
                       [turn](const Family& f) { return f.turn == turn; });
}

const Family* familyOfUsage(UsageId usage) {
  const auto found = std::find_if(std::begin(kFamilies), std::end(kFamilies),
                                  [usage](const Family& f) { return f.usage == usage; });
  return found == std::end(kFamilies) ? nullptr : found;
}

std::optional<int> shapeNumber(const Family& family, GroupCounts counts) {
  const int largest = largestCount(counts);
  const int groups = hitGroups(counts);
  // Numbers that stand in several groups can hit more than six of them; such a pair is inside no table.
  if (largest < 1 || largest > family.bounds.largest || groups < family.bounds.fewest_groups ||
      groups > kRedsPerTicket)
    return std::nullopt;
  return kLookups[int(family.set)][largest][groups];
}

namespace {

// Ids and counts have one or two digits; appending them by hand is several times faster than formatting.
void appendNumber(std::string& text, int number) {
  if (number >= 10) text += static_cast<char>('0' + number / 10);
  text += static_cast<char>('0' + number % 10);
}

void appendGroups(std::string& text, GroupCounts counts, int first_group_id) {
  text += '[';
  const std::size_t start = text.size();
  while (counts != 0) {
    const int group = std::countr_zero(counts) / kGroupBits;
    const GroupCounts field = GroupCounts{7} << (group * kGroupBits);
    for (GroupCounts i = (counts & field) >> (group * kGroupBits); i > 0; --i) {
      if (text.size() > start) text += ',';
      appendNumber(text, first_group_id + group);
    }
    counts &= ~field;
  }
  text += ']';
}

}  // namespace

std::string groupText(GroupCounts counts, int first_group_id) {
  std::string text;
  appendGroups(text, counts, first_group_id);
  return text;
}

std::string drawText(const Family& family, GroupCounts counts) {
  std::string text;
  text.reserve(48);  // "[12,13,14,15,16,17]" and the longest shape
  appendGroups(text, counts, family.first_group_id);
  text += "（";
  if (const auto shape = shapeNumber(family, counts))
    text += shapeTexts(family.set)[*shape];
  else
    appendNumber(text, largestCount(counts));
  text += "）";
  return text;
}

}  // namespace lotmere
