#pragma once

/// Installs the translations for the first of the user's languages that there are any for. English
/// needs none, so a user who prefers it gets no language named after it. Needs a QCoreApplication.
void installTranslations();
