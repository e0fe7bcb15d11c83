#pragma once

#include <QAbstractListModel>
#include <QList>

#include <algorithm>
#include <set>

namespace stillgate
{

/// The rows of a list, told apart by their `id`, each given to its delegate whole, as `row`. A new set of rows changes
/// only what differs, so that a row on the screen keeps its place, the keyboard and whether it is unfolded.
///
/// `Row` is a gadget with a text `id` that is compared by value.
template <class Row>
class RowsModel final : public QAbstractListModel
{
public:
    static constexpr int rowRole = Qt::UserRole;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        const bool isRow = role == rowRole && index.row() >= 0 && index.row() < m_rows.size();
        return isRow ? QVariant::fromValue(m_rows[index.row()]) : QVariant{};
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override { return {{rowRole, "row"}}; }

    [[nodiscard]] const QList<Row>& rows() const { return m_rows; }

    void setRows(QList<Row> rows)
    {
        removeAllBut(rows);
        for (qsizetype at = 0; at < rows.size(); ++at)
            put(at, rows);
        removeFrom(rows.size()); // a second one of the same id
    }

private:
    void removeAllBut(const QList<Row>& wanted)
    {
        std::set<QString> ids;
        for (const auto& row : wanted)
            ids.insert(row.id);
        const auto isWanted = [&](qsizetype at) { return ids.contains(m_rows[at].id); };
        for (auto end = m_rows.size(); end > 0;) {
            if (isWanted(end - 1)) {
                --end;
                continue;
            }
            auto begin = end - 1;
            while (begin > 0 && !isWanted(begin - 1))
                --begin;
            remove(begin, end);
            end = begin;
        }
    }

    void put(qsizetype at, const QList<Row>& wanted)
    {
        const auto& row = wanted[at];
        if (at < m_rows.size() && m_rows[at].id == row.id) {
            update(at, row);
            return;
        }
        for (auto from = at + 1; from < m_rows.size(); ++from) {
            if (m_rows[from].id != row.id)
                continue;
            beginMoveRows({}, int(from), int(from), {}, int(at));
            m_rows.move(from, at);
            endMoveRows();
            update(at, row);
            return;
        }
        beginInsertRows({}, int(at), int(at));
        m_rows.insert(at, row);
        endInsertRows();
    }

    void update(qsizetype at, const Row& row)
    {
        if (m_rows[at] == row)
            return;
        m_rows[at] = row;
        Q_EMIT dataChanged(index(int(at)), index(int(at)), {rowRole});
    }

    void removeFrom(qsizetype begin)
    {
        if (begin < m_rows.size())
            remove(begin, m_rows.size());
    }

    void remove(qsizetype begin, qsizetype end)
    {
        beginRemoveRows({}, int(begin), int(end - 1));
        m_rows.remove(begin, end - begin);
        endRemoveRows();
    }

    QList<Row> m_rows;
};

} // namespace stillgate
