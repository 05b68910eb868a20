// A box of port numbers that shows beside each number which device it is: its entries stay the
// numbers, as they are handed to a search.
#pragma once

#include <QString>

class QComboBox;

// Draws the description of each entry beside its text in the open list.
void showPortDescriptions(QComboBox &box);

// Adds a number with its device's name and description, shown as plain text.
void addPort(QComboBox &box, const QString &number, const QString &description);
// Of the entry that the box's text stands for; empty where there is none.
QString portDescription(const QComboBox &box);
