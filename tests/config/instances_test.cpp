#include "cwmp/instances.h"

#include "router_test.h"

namespace {

class Instances : public RouterTest {
  protected:
    // A package with one rule for each number, among sections of another type; an empty one has no number.
    void rules(const Texts& numbers) {
        std::string text = "config other\n\toption id '5'\n";
        for (const auto& number : numbers) {
            text += "config rule\n";
            if (!number.empty()) text += "\toption id '" + number + "'\n";
            text += "config other\n";
        }
        package("nat", text);
    }
};

TEST_F(Instances, ListsTheNumbersOfATypeInAscendingOrder) {
    rules({"7", "2", "-1", "12x", "2", "many"});
    std::vector<int32_t> list(8, 99);
    FROM_LIBRARY(__getInstanceList)("nat", "rule", "id", list.data());
    EXPECT_THAT(list, ElementsAre(-1, 0, 2, 2, 7, 12, 99, 99));
    EXPECT_EQ(FROM_LIBRARY(__getInstanceMax)("nat", "rule"), 6);
}

TEST_F(Instances, LeavesTheEntryOfASectionWithoutNumber) {
    rules({"7", "", "3"});
    std::vector<int32_t> list = {0, 5, 0};
    FROM_LIBRARY(__getInstanceList)("nat", "rule", "id", list.data());
    EXPECT_THAT(list, ElementsAre(3, 5, 7));
    EXPECT_EQ(FROM_LIBRARY(__getInstanceMax)("nat", "rule"), 3);
}

TEST_F(Instances, FindsNothingInAMissingPackage) {
    int32_t entry = 99;
    FROM_LIBRARY(__getInstanceList)("nat", "rule", "id", &entry);
    EXPECT_EQ(entry, 99);
    EXPECT_EQ(FROM_LIBRARY(__getInstanceMax)("nat", "rule"), 0);
    EXPECT_EQ(FROM_LIBRARY(__getInstanceNext)("nat", "rule", "id", 8), 1);
}

TEST_F(Instances, GivesTheLowestFreeNumber) {
    struct Row {
        Texts numbers;
        int capacity, next;
    };
    for (const Row& row :
         {Row{{}, 10, 1}, Row{{"2", "3"}, 10, 1}, Row{{"4", "1", "2"}, 10, 3}, Row{{"1", "2", "3"}, 10, 4},
          Row{{"1", "2", "3"}, 4, 4}, Row{{"1", "2", "3"}, 3, 4}, Row{{"1", "1"}, 10, 2},
          Row{{"1", "1", "2"}, 10, 3}, Row{{"1", "", "2"}, 10, 1}, Row{{"1", "2147483647"}, 10, 2},
          Row{{"0"}, 10, 1}, Row{{"1"}, 0, 2}, Row{{"1"}, -5, 2}}) {
        rules(row.numbers);
        EXPECT_EQ(FROM_LIBRARY(__getInstanceNext)("nat", "rule", "id", row.capacity), row.next)
            << ::testing::PrintToString(row.numbers) << " of " << row.capacity;
    }
}

}  // namespace
