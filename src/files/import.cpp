#include "files/import.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "core/text.hpp"
#include "files/text_file.hpp"
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
LastRow last_Row(Store& store, Job& job) {
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
            R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球")
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

// Walks over the usable lines of a text; the bar runs up to its size. Ends early when `use` says that it has enough.
template <class Use>
ImportResult walk_Lines(std::string_view text, const ImportChoice& choice, Job& job, Use&& use) {
  ImportResult result;
  const std::size_t size = text.size();
  std::size_t served = 0;
  while (!text.empty()) {
    if (const auto ticket = import_Line(take_Line(text), choice)) {
      ++result.count;
      if (!use(*ticket)) return result;
    }
    const std::size_t done = size - text.size();
    if (done - served < kBlock && !text.empty()) continue;
    job.advance(static_cast<std::int64_t>(done));
    served = done;
  }
  return result;
}

// Reads a file; the count tells whether it holds any ticket.
ImportResult read_Text(TextFile& source, Desk& desk, const ImportChoice& choice, std::string& text) {
  Job job(desk, static_cast<std::int64_t>(source.size()), Job::Stop::impossible);
  auto decoded = decode_Bytes(source.bytes(job), job);
  if (!decoded) return {.is_text = false};
  text = *std::move(decoded);
  return walk_Lines(text, choice, job, [](const ImportTicket&) { return false; });
}

ImportResult write_Tickets(Store& store, Desk& desk, std::string_view text, const ImportChoice& choice) {
  Job job(desk, static_cast<std::int64_t>(text.size()), Job::Stop::impossible);
  RowWriter writer(store, last_Row(store, job));
  return walk_Lines(text, choice, job, [&](const ImportTicket& ticket) {
    writer.add(ticket);
    return true;
  });
}

std::string result_Text(const ImportResult& result) {
  if (!result.is_text) return "这不是文本文件，没有导入号码！";
  return fmt::format("数据导入完成，共导入：{} 注！", to_QuanJiao(result.count));
}

}  // namespace

std::optional<ImportChoice> read_ImportChoice(Desk& desk, int format, std::string_view period) {
  constexpr std::size_t period_length = 7;
  const ImportChoice choice{static_cast<ImportFormat>(format), parse_Period(period)};
  if (choice.format != ImportFormat::numbers || count_Characters(period) == period_length) return choice;
  desk.tell("请在文本框中输入一个７位数的期号。(如：２００７００１)", Tone::warning);
  return std::nullopt;
}

ImportResult import_Tickets(Store& store, Desk& desk, const std::filesystem::path& file,
                            const ImportChoice& choice) {
  TextFile source(file);
  const StopScope stop(desk);
  std::string text;
  ImportResult result = read_Text(source, desk, choice, text);
  if (result.count == 0) return result;
  const bool has_rows = store.value(R"(SELECT EXISTS(SELECT 1 FROM "日志表"))") != 0;
  const bool keeps = !has_rows || desk.ask("表格中原有的数据要保留吗？");

  TextScope running(desk.running_Text());
  StoreChange change(store);
  if (!keeps) clear_Tickets(store, desk, 0);
  result = write_Tickets(store, desk, text, choice);
  change.commit();
  running.keep();
  return result;
}

ImportResult import_Command(Store& store, Desk& desk, const std::filesystem::path& file,
                            const std::optional<ImportChoice>& choice) {
  const ImportResult result = choice ? import_Tickets(store, desk, file, *choice) : ImportResult{};
  const std::string text = result_Text(result);
  desk.tell(text, result.count == 0 ? Tone::warning : Tone::information);
  desk.running_Text().append_Line(text);
  return result;
}

}  // namespace lotmere
