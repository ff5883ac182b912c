#include "road.h"

namespace road {
namespace {

class CacheRoad : public Road {
protected:
    static std::ptrdiff_t filesIn(const fs::path& directory) {
        return std::distance(fs::directory_iterator(directory), fs::directory_iterator());
    }
};

TEST_F(CacheRoad, WhatTheCacheLacksIsNamed) {
    write({{.profile = std::vector<float>{1}}});
    ASSERT_TRUE(Storage(mainFile()));
    const std::pair<const char*, const char*> cases[] = {
        {"UPDATE Info SET Compressor = NULL", "Compressor ID not in SQLite cache."},
        {"UPDATE Info SET Compressor = 'no guid'", "invalid uuid string"},
        {"UPDATE Info SET Compressor = '00000000-0000-0000-0000-000000000000'",
         "unknown compressor id: 00000000-0000-0000-0000-000000000000"},
        {"UPDATE Info SET QSFSize = 'x'", "bad lexical cast: source type value could not be interpreted as target"},
    };
    for (const auto& [change, text] : cases) {
        sql(change);
        EXPECT_FALSE(Storage(mainFile())) << change;
        EXPECT_EQ(lastError(), text);
    }
}

TEST_F(CacheRoad, AViewInTheNameOfATableIsNoCache) {
    write({{.profile = Floats{1}}});
    ASSERT_TRUE(Storage(mainFile()));
    for (const std::string table : {"Info", "Spectra", "Transformators"}) {
        sql("ALTER TABLE " + table + " RENAME TO Former" + table + "; CREATE VIEW " + table +
            " AS WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n) SELECT f.* FROM n, Former" + table +
            " f WHERE x < 0");
        EXPECT_TRUE(Storage(mainFile(), 0)) << lastError();
        EXPECT_EQ(sql("SELECT type FROM sqlite_master WHERE name = '" + table + "'"), "table") << "made anew";
    }
}

TEST_F(CacheRoad, ARunWithoutPolaritiesOpensRawOnly) {
    write({});
    EXPECT_FALSE(Storage(mainFile(), 0));
    EXPECT_EQ(lastError(), "Missing polarity information!");
    EXPECT_TRUE(Storage(mainFile(), 1));
}

TEST_F(CacheRoad, AWriteProtectedDirectoryGetsATemporaryCacheUntilItsHandleCloses) {
    write({{.profile = std::vector<std::uint32_t>{1, 2}}});
    const kvan::test::TemporaryDirectory temporary;
    fs::permissions(temporary, fs::all_all);
    fs::permissions(m_directory, static_cast<fs::perms>(0555));
    EXPECT_EQ(kvan::test::asNobody([&] {
                  setenv("TMPDIR", temporary.c_str(), 1);
                  const Storage first(mainFile());
                  const Storage second(mainFile());
                  return first && second ? std::to_string(filesIn(temporary)) : lastError();
              }),
              "2");
    EXPECT_EQ(filesIn(temporary), 0);
    EXPECT_FALSE(fs::exists(cacheFile()));
}

}  // namespace
}  // namespace road
