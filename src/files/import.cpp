#include "files/import.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "files/compound_line.hpp"
#include "game/game.hpp"
#include "tickets/ticket_steps.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = std::size_t{32} * 1024;  // bytes of text between two looks at the desk
constexpr std::int64_t kRowBlock = 4096;                // rows read between two looks at the desk

// The running text, put back unless what it tells of came to stand.
class TextScope {
 public:
  explicit TextScope(RunningText& text) : text_(text), before_(text.text()) {}
  TextScope(const TextScope&) = delete;
  TextScope& operator=(const TextScope&) = delete;
  ~TextScope() {
    if (!stands_) text_.set(std::move(before_));
  }
  void keep() { stands_ = true; }

 private:
  RunningText& text_;
  std::string before_;
  bool stands_ = false;
};

struct LastRow {
  std::int64_t id = 0;
  std::int64_t seq = 0;
};

// Where new rows go on. A walk and not an aggregate of the engine's, so that the desk is served on the way.
LastRow lastRow(Store& store, CourseLeg& job) {
  LastRow last;
  Query rows = store.query(R"(SELECT "ID","序号" FROM "日志表" ORDER BY "ID")");
  for (std::int64_t read = 1; rows.next(); ++read) {
    last = {rows.whole(0), std::max(last.seq, rows.whole(1))};
    if (read % kRowBlock == 0) job.advance(0);
  }
  return last;
}

// Adds rows one behind the other.
class RowWriter {
 public:
  RowWriter(Store& store, const LastRow& last)
      : insert_(store.query(
            R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6",
               "蓝球")
               VALUES (?,?,?,?,?,?,?,?,?,?))")),
        last_(last) {}

  void add(const ImportTicket& ticket) {
    SQLite::Statement& row = insert_.statement();
    int place = 0;
    row.bind(++place, ++last_.id);
    row.bind(++place, ++last_.seq);
    row.bind(++place, ticket.period);
    for (const int red : ticket.numbers.reds) row.bind(++place, red);
    row.bind(++place, ticket.numbers.blue);
    row.exec();
    row.reset();
  }

 private:
  Query insert_;
  LastRow last_;
};

// Walks over the lines of a text and gives each with its number to `use`; the bar runs up to its size.
template <class Use>
void walkLines(std::string_view text, CourseLeg& job, Use&& use) {
  const std::size_t size = text.size();
  std::size_t served = 0;
  for (std::int64_t number = 1; !text.empty(); ++number) {
    use(takeLine(text), number);
    const std::size_t done = size - text.size();
    if (done - served < kBlock && !text.empty()) continue;
    job.advance(static_cast<std::int64_t>(done));
    served = done;
  }
}

// What a file holds, before anything is asked or written.
struct Survey {
  std::string text;
  ImportResult result;          // as it will be
  std::int64_t wide_lines = 0;  // tickets on whose lines further numbers follow
  std::int64_t first_wide = 0;  // number of the first of them
  std::int64_t tickets = 0;

  void addTicket(std::string_view line, std::int64_t number, const ImportChoice& choice) {
    const auto ticket = importLine(line, choice);
    if (!ticket) skip(line, number);
    if (ticket && ++tickets > 0 && ticket->more && wide_lines++ == 0) first_wide = number;
    if ((!ticket || ticket->more) && result.refusal.empty() && hasTicketCount(line))
      result.refusal =
          fmt::format("第 {} 行写着注数，是复式号码，要按复式格式导入（命令行 --format 3），没有导入号码！",
                      toFullWidth(number));
  }
  void addBet(std::string_view line, std::int64_t number) {
    const auto bet = readCompoundLine(line);
    if (bet)
      tickets += countTickets(*bet);
    else
      skip(line, number);
  }
  void skip(std::string_view line, std::int64_t number) {
    if (!trim(line).empty() && result.skipped++ == 0) result.first_skipped = number;
  }
};

Survey surveyFile(TextFile& source, Desk& desk, const ImportChoice& choice) {
  CourseLeg job(desk.course(), static_cast<std::int64_t>(source.size()), Course::Stop::impossible);
  Survey survey;
  auto decoded = decodeBytes(source.bytes(job), job);
  if (!decoded) {
    survey.result.refusal = "这不是文本文件，没有导入号码！";
    return survey;
  }
  survey.text = *std::move(decoded);
  walkLines(survey.text, job, [&](std::string_view line, std::int64_t number) {
    if (choice.format == ImportFormat::compound)
      survey.addBet(line, number);
    else
      survey.addTicket(line, number, choice);
  });
  if (survey.tickets > kMostCompoundTickets && choice.format == ImportFormat::compound)
    survey.result.refusal = fmt::format("文件里的复式号码共 {} 注，超过 {} 注，没有导入号码！",
                                        toFullWidth(survey.tickets), toFullWidth(kMostCompoundTickets));
  survey.result.count = survey.result.refusal.empty() ? static_cast<int>(survey.tickets) : 0;
  return survey;
}

// Whether lines with more numbers than the format takes may be read all the same.
bool acceptWideLines(Desk& desk, const Survey& survey) {
  if (survey.wide_lines == 0) return true;
  constexpr std::string_view buttons[] = {"仍然导入", "取消"};
  const std::string question = fmt::format(
      "文件内容格式可能选错了：有 {} 行的数字比所选格式的多，第一处在第 {} "
      "行，多出的数字会被忽略。要按这个格式导入吗？",
      toFullWidth(survey.wide_lines), toFullWidth(survey.first_wide));
  return desk.choose(question, buttons, 1) == 0;
}

// What becomes of the tickets that stand; nothing when the user cancels.
std::optional<Existing> settleExisting(Store& store, Desk& desk, Existing existing) {
  if (existing != Existing::ask) return existing;
  if (store.value(R"(SELECT EXISTS(SELECT 1 FROM "日志表"))") == 0) return Existing::keep;
  constexpr std::string_view buttons[] = {"保留并追加", "替换", "取消"};
  constexpr std::optional<Existing> meanings[] = {Existing::keep, Existing::replace, std::nullopt};
  return meanings[desk.choose("表格中原有的数据要保留吗？", buttons, 2)];
}

void writeTickets(Store& store, Desk& desk, std::string_view text, const ImportChoice& choice) {
  CourseLeg job(desk.course(), static_cast<std::int64_t>(text.size()), Course::Stop::impossible);
  RowWriter writer(store, lastRow(store, job));
  walkLines(text, job, [&](std::string_view line, std::int64_t /*number*/) {
    if (choice.format == ImportFormat::compound) {
      const auto add = [&](const DrawNumbers& numbers) { writer.add({choice.period, numbers}); };
      if (const auto bet = readCompoundLine(line)) expandBet(*bet, add);
    } else if (const auto ticket = importLine(line, choice)) {
      writer.add(*ticket);
    }
  });
}

std::string resultText(const ImportResult& result) {
  if (!result.refusal.empty()) return result.refusal;
  std::string text = fmt::format("数据导入完成，共导入：{} 注！", toFullWidth(result.count));
  if (result.skipped == 0) return text;
  return text + fmt::format("跳过了 {} 行，第一处在第 {} 行。", toFullWidth(result.skipped),
                            toFullWidth(result.first_skipped));
}

}  // namespace

std::optional<ImportChoice> readImportChoice(Desk& desk, int format, std::string_view period) {
  const auto typed = parsePeriod(period);
  const ImportChoice choice{static_cast<ImportFormat>(format), typed.value_or(0)};
  if (typed || choice.format == ImportFormat::period_numbers) return choice;
  desk.tell("请在文本框中输入一个７位数的期号。(如：２００７００１)", Tone::warning);
  return std::nullopt;
}

ImportResult importTickets(Store& store, Desk& desk, const std::filesystem::path& file,
                           const ImportChoice& choice, Existing existing) {
  TextFile source(file);
  const StopScope stop(desk.course());
  Survey survey = surveyFile(source, desk, choice);
  if (survey.result.count == 0) return survey.result;
  const auto settled = acceptWideLines(desk, survey) ? settleExisting(store, desk, existing) : std::nullopt;
  if (!settled) return {.cancelled = true};

  TextScope running(desk.runningText());
  StoreChange change(store);
  keepTickets(store, TicketAction::import);
  if (*settled == Existing::replace) clearTickets(store, desk);
  writeTickets(store, desk, survey.text, choice);
  change.commit();
  running.keep();
  survey.result.outcome = Outcome::done;
  return survey.result;
}

ImportResult importCommand(Store& store, Desk& desk, const std::filesystem::path& file,
                           const std::optional<ImportChoice>& choice, Existing existing) {
  ImportResult result = choice ? importTickets(store, desk, file, *choice, existing) : ImportResult{};
  if (result.cancelled) return result;
  const std::string text = resultText(result);
  desk.tell(text, result.count == 0 ? Tone::warning : Tone::information);
  desk.runningText().appendLine(text);
  return result;
}

}  // namespace lotmere
