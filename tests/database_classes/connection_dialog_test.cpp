// The connection dialog of plug-in engines, answered by a person at the
// (private) screen: OK writes what was typed back, Cancel leaves it all.
#include "strings/kstring.h"
#include "support/class_kit.h"
#include "support/person.h"
#include "support/xvfb.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

namespace kelp::test {
namespace {

TEST(ConnectionDialog, OkWritesTheEntriesBackAndCancelDoesNot) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    struct Case {
        const char *title;
        std::vector<std::string> steps;
        bool ok;
        const char *user, *password;
    } cases[] = {
        {"Connect one",
         // The X focus first: under load the typing must not race the
         // dialog taking it.
         {"windowfocus --sync", "type kim", "key Tab", "type s3cret", "key Return"},
         true,
         "kim",
         "s3cret"},
        {"Connect two", {"type kim", "key Escape"}, false, "ann", "old"},
    };
    for (const Case &c : cases) {
        void *dialog = KELPDBConnectionDialogCreate(Lit(c.title));
        // Slots the caller owns: OK releases what they held.
        KelpString user = string("ann").Release(), password = string("old").Release();
        KELPDBConnectionDialogAddField(dialog, Lit("User"), &user, false);
        KELPDBConnectionDialogAddField(dialog, Lit("Password"), &password, true);
        bool ok;
        {
            Person person(c.title, c.steps);
            ok = KELPDBConnectionDialogShow(dialog);
        }
        KELPDBConnectionDialogDelete(dialog);
        EXPECT_EQ(ok, c.ok) << c.title;
        EXPECT_EQ(Str(user), c.user) << c.title;
        EXPECT_EQ(Str(password), c.password) << c.title;
        RuntimeUnlockString(user);
        RuntimeUnlockString(password);
    }
}

} // namespace
} // namespace kelp::test
