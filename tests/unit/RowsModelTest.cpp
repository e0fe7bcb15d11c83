#include "Views/Common/RowsModel.h"

#include "Views/AppPicker/AppPickerModel.h"

#include <QPersistentModelIndex>
#include <gtest/gtest.h>

#include <random>

namespace stillgate
{

namespace
{

QList<AppRow> rowsOf(const QStringList& ids)
{
    QList<AppRow> rows;
    for (const auto& id : ids)
        rows.push_back({.id = id, .name = id});
    return rows;
}

QStringList idsOf(const RowsModel<AppRow>& model)
{
    QStringList ids;
    for (const auto& row : model.rows())
        ids << row.id;
    return ids;
}

} // namespace

TEST(RowsModel, keepsWhatStays)
{
    RowsModel<AppRow> model;
    model.setRows(rowsOf({"a", "b", "c", "d"}));
    const QPersistentModelIndex c{model.index(2)};
    int resets = 0;
    int removals = 0;
    int changes = 0;
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&] { ++resets; });
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, [&] { ++removals; });
    QObject::connect(&model, &QAbstractItemModel::dataChanged, [&] { ++changes; });

    auto changed = rowsOf({"c", "new", "a"});
    changed[2].name = "another";
    model.setRows(changed);
    EXPECT_EQ(idsOf(model), (QStringList{"c", "new", "a"}));
    EXPECT_EQ(c.row(), 0) << "it has moved, and is the same row";
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(removals, 2);
    EXPECT_EQ(resets, 0);

    model.setRows(changed);
    EXPECT_EQ(changes, 1) << "nothing is different";
}

TEST(RowsModel, endsWithTheRowsThatAreWanted)
{
    std::mt19937 random{7};
    RowsModel<AppRow> model;
    for (int round = 0; round < 500; ++round) {
        QStringList wanted;
        for (int count = static_cast<int>(random() % 12); count > 0; --count)
            wanted << QString::number(random() % 9); // some of them twice: a server may send that
        model.setRows(rowsOf(wanted));
        ASSERT_EQ(idsOf(model), wanted) << "round " << round;
    }
}

} // namespace stillgate
