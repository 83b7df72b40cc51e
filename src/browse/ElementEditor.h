#pragma once

#include "browse/ElementDeletion.h"
#include "browse/ElementKind.h"
#include "db/DBElement.h"
#include "widgets/QuickDialogs.h"

#include <QDialog>
#include <QString>
#include <QWidget>

#include <memory>
#include <type_traits>

namespace Planaria {

class DB;

/// How the elements of a tab are made, copied, edited and deleted. Everything is written to the
/// file at once, and the user is told what is not.
class ElementEditor
{
public:
    /// @param owner the tab
    ElementEditor(ElementKind::Type kind, DB *database, QWidget *owner);
    virtual ~ElementEditor();

    ElementEditor(const ElementEditor &) = delete;
    ElementEditor &operator=(const ElementEditor &) = delete;

    /// @return the id of the new element; 0 where none was made; the same for copy()
    virtual int create() = 0;
    virtual int copy(int id) = 0;
    virtual void edit(int id) = 0;
    /// An element in use stays, and the user is told why.
    /// A failure is for the caller to tell.
    [[nodiscard]] virtual ElementDeletion::Outcome remove(int id) = 0;

    [[nodiscard]] QString table() const;
    /// What users call one of the elements.
    [[nodiscard]] QString word() const;

protected:
    /// @return the id; 0 where the file does not take the element
    int store(DBElement *element);
    [[nodiscard]] ElementDeletion::Outcome removeUnused(DBElement *element, const QString &name);

    DB *db;
    QWidget *widget;

private:
    ElementKind::Type type;
};

/// Of elements that are a name and nothing else to a user.
template <typename Element> class NameEditor final : public ElementEditor
{
public:
    using ElementEditor::ElementEditor;

    int create() override { return createNamed(QStringLiteral("New "), QString()); }

    /// Takes over the name alone.
    int copy(int id) override
    {
        return createNamed(QStringLiteral("Copy "),
                           Element(id, db).name() + QStringLiteral(" - copy"));
    }

    void edit(int id) override
    {
        Element element(id, db);
        askName(QStringLiteral("Edit "), element.name(), &element);
    }

    ElementDeletion::Outcome remove(int id) override
    {
        Element element(id, db);
        return removeUnused(&element, element.name());
    }

private:
    int createNamed(const QString &command, const QString &proposal)
    {
        Element element;
        return askName(command, proposal, &element);
    }

    /// @return the id of the stored element; 0 where the user gives up
    int askName(const QString &command, const QString &proposal, Element *element)
    {
        QString name = proposal;
        QuickDialogs::getUniqueText(db, widget->parentWidget(), command + word(), table(),
                                    QStringLiteral("Name"), name);
        if (name.isEmpty())
            return 0;
        element->setName(name);
        return store(element);
    }
};

/// Of elements that are edited in a form of their own.
template <typename Element, typename Form> class FormEditor final : public ElementEditor
{
public:
    using ElementEditor::ElementEditor;

    int create() override
    {
        if constexpr (std::is_constructible_v<Element, DB *>)
            return run(std::make_unique<Element>(db));
        else
            return run(std::make_unique<Element>());
    }

    int copy(int id) override
    {
        auto copied = std::make_unique<Element>(*load(id), false);
        if constexpr (hasTitle)
            copied->setTitle(copied->title() + QStringLiteral(" - copy"));
        else
            copied->setName(copied->name() + QStringLiteral(" - copy"));
        return run(std::move(copied));
    }

    void edit(int id) override { run(load(id)); }

    ElementDeletion::Outcome remove(int id) override
    {
        const auto element = load(id);
        if constexpr (hasTitle)
            return removeUnused(element.get(), element->title());
        else
            return removeUnused(element.get(), element->name());
    }

private:
    static constexpr bool hasTitle = requires(const Element &element) { element.title(); };

    std::unique_ptr<Element> load(int id)
    {
        if constexpr (std::is_constructible_v<Element, int, DB *, bool>)
            return std::make_unique<Element>(id, db,
                                             false); // pictures are read when they are shown
        else
            return std::make_unique<Element>(id, db);
    }

    /// @return the id of the stored element; 0 where the user gives up
    int run(std::unique_ptr<Element> element)
    {
        if (Form(element.get(), db, widget).exec() != QDialog::Accepted)
            return 0;
        return store(element.get());
    }
};

} // namespace Planaria
