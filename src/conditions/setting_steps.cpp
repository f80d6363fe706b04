#include "conditions/setting_steps.hpp"

#include "conditions/condition_store.hpp"

namespace lotmere {
namespace {

struct Step {
  int number = 0;
  std::string name;
  std::string content;
};

// The newest change that stands, or the oldest one that was taken back.
std::optional<Step> nextStep(Store& store, Direction direction) {
  Query row = store.query(
      direction == Direction::back
          ? R"(SELECT "序号","名称","内容" FROM "设置步骤" WHERE "已撤销"=0 ORDER BY "序号" DESC LIMIT 1)"
          : R"(SELECT "序号","名称","内容" FROM "设置步骤" WHERE "已撤销"=1 ORDER BY "序号" ASC LIMIT 1)");
  if (!row.next()) return std::nullopt;
  return Step{row.number(0), row.text(1), row.text(2)};
}

std::optional<std::string> nextName(Store& store, Direction direction) {
  auto step = nextStep(store, direction);
  if (!step) return std::nullopt;
  return std::move(step->name);
}

std::optional<StepMade> makeStep(Store& store, Direction direction) {
  StoreChange change(store);
  auto step = nextStep(store, direction);
  if (!step) return std::nullopt;
  const ConditionSet before = loadConditionSet(store);
  ConditionSet after = before;
  // A step that can't be read is passed over and gone.
  if (const auto made = unpackChange(step->content)) {
    after = applyChange(before, *made, direction);
    // A range that the user brought back stays.
    if (after.match != before.match && after.match.used) after.match.chosen = true;
  }
  saveConditionSet(store, before, after, {.kept = false});
  store.query(R"(UPDATE "设置步骤" SET "已撤销"=? WHERE "序号"=?)")
      .bind(direction == Direction::back ? 1 : 0, step->number)
      .run();
  change.commit();
  return StepMade{std::move(step->name), std::move(after)};
}

}  // namespace

void keepStep(Store& store, const SettingChange& change, const std::string& name) {
  store.query(R"(DELETE FROM "设置步骤" WHERE "已撤销"=1)").run();
  store
      .query(R"(INSERT INTO "设置步骤" ("序号","用户","名称","内容")
                SELECT (SELECT ifnull(max("序号"),0)+1 FROM "设置步骤"),
                       ifnull((SELECT "当前用户" FROM "用户模式" LIMIT 1),''),?,?)")
      .bind(name, packChange(change))
      .run();
  store.query(R"(DELETE FROM "设置步骤" WHERE "序号"<=(SELECT max("序号") FROM "设置步骤")-?)")
      .bind(kMostSteps)
      .run();
}

NextSteps nextSteps(Store& store) {
  return {nextName(store, Direction::back), nextName(store, Direction::forward)};
}

std::optional<StepMade> undoSettings(Store& store) { return makeStep(store, Direction::back); }

std::optional<StepMade> redoSettings(Store& store) { return makeStep(store, Direction::forward); }

}  // namespace lotmere
