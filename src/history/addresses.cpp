#include "history/addresses.hpp"

namespace lotmere {

std::string stored_Address(Store& store, AddressUse use) {
  Query rows = store.query(R"(SELECT "地址" FROM "下载地址" ORDER BY rowid LIMIT 1 OFFSET ?)");
  rows.bind(static_cast<int>(use));
  return rows.next() ? rows.text(0) : std::string();
}

void remember_Address(Store& store, AddressUse use, const std::string& address) {
  if (stored_Address(store, use) == address) return;
  const int place = static_cast<int>(use);
  StoreChange change(store);
  for (auto rows = store.value(R"(SELECT count(*) FROM "下载地址")"); rows <= place; ++rows)
    store.query(R"(INSERT INTO "下载地址" VALUES (''))").run();
  store
      .query(R"(UPDATE "下载地址" SET "地址"=?1
                WHERE rowid=(SELECT rowid FROM "下载地址" ORDER BY rowid LIMIT 1 OFFSET ?2))")
      .bind(address, place)
      .run();
  change.commit();
}

}  // namespace lotmere
