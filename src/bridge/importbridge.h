#pragma once

#include "bankfiles/bankfile.h"
#include "storelink.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

class Store;

// The import sheet's state and preview: the bank file read last, its column mapping,
// the account the lines go to and the sign flip. The preview is worked out again
// whenever any of them, or the Book, changes.
class ImportBridge : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // Whether a file was read (and not replaced by an unreadable one since).
    Q_PROPERTY(bool hasFile READ hasFile NOTIFY fileChanged FINAL)
    // The chosen file's name without its folder, or "<n> files"; empty before the first choice.
    Q_PROPERTY(QString fileName READ fileName NOTIFY fileChanged FINAL)
    // The error line under the file key; empty when the last file could be read (and
    // its currency is the books').
    Q_PROPERTY(QString message READ message NOTIFY previewChanged FINAL)
    // What was found in the file: "OFX · account 1234 · USD"; empty without a file, or
    // with several (then fileLines tells of each).
    Q_PROPERTY(QString summary READ summary NOTIFY fileChanged FINAL)
    // With several files, one line for each: "<name> · <summary> · <n> new · <s> already
    // in · <b> unreadable"; empty with one.
    Q_PROPERTY(QStringList fileLines READ fileLines NOTIFY previewChanged FINAL)
    // Whether the file is a table whose columns the user may correct (CSV).
    Q_PROPERTY(bool isTable READ isTable NOTIFY fileChanged FINAL)
    // Whether the file's dates read as well month first as day first; then `dayFirst`
    // decides, month first until the user says otherwise.
    Q_PROPERTY(bool datesAmbiguous READ datesAmbiguous NOTIFY fileChanged FINAL)
    Q_PROPERTY(bool dayFirst READ dayFirst WRITE setDayFirst NOTIFY previewChanged FINAL)
    // How a table's text is read, as found or as the user chose: its encoding (one of
    // encodingChoices, or another ICU name the file's mark gave), its separator (0 for
    // ",", 1 for ";", 2 for a tab) and whether amounts have a decimal comma.
    // The reading may be changed while `isTable`, and after a chosen encoding left no
    // table, so that another may be chosen.
    Q_PROPERTY(bool readingChangeable READ readingChangeable NOTIFY fileChanged FINAL)
    Q_PROPERTY(QStringList encodingChoices READ encodingChoices CONSTANT FINAL)
    Q_PROPERTY(QString encoding READ encoding WRITE setEncoding NOTIFY fileChanged FINAL)
    Q_PROPERTY(int separator READ separator WRITE setSeparator NOTIFY fileChanged FINAL)
    Q_PROPERTY(bool decimalComma READ decimalComma WRITE setDecimalComma NOTIFY fileChanged FINAL)
    // What each column picker offers: "—" (no column), then one entry per header in
    // header order, its text or "Column <k>" when it has none.
    Q_PROPERTY(QStringList columnChoices READ columnChoices NOTIFY fileChanged FINAL)
    // The six picker positions (date, description, amount, debit, credit, category):
    // 0 for no column, k for the k-th header.
    Q_PROPERTY(QVariantList choices READ choices NOTIFY mappingChanged FINAL)
    // The id of the account the lines go to; empty for none. Starts at the first
    // active account.
    Q_PROPERTY(QString account READ account WRITE setAccount NOTIFY accountChanged FINAL)
    // Negate every imported amount (and set its kind again by the new sign).
    Q_PROPERTY(bool flip READ flip WRITE setFlip NOTIFY flipChanged FINAL)
    // Whether there is a preview: a file and an account.
    Q_PROPERTY(bool hasPreview READ hasPreview NOTIFY previewChanged FINAL)
    // The number of new lines in the preview; 0 without one.
    Q_PROPERTY(int newCount READ newCount NOTIFY previewChanged FINAL)
    // "Preview · <n> new · <s> already in · <b> unreadable"; empty without a preview.
    Q_PROPERTY(QString previewTitle READ previewTitle NOTIFY previewChanged FINAL)
    // The first new lines (at most previewLimit), each a map: date (short date text),
    // payee, category, amountText (signed money text), negative.
    Q_PROPERTY(QVariantList previewLines READ previewLines NOTIFY previewChanged FINAL)
    // The caption of the import key: "Import <n>".
    Q_PROPERTY(QString importTitle READ importTitle NOTIFY previewChanged FINAL)

public:
    // How many preview lines are listed; the counts always cover the whole file.
    static constexpr int previewLimit = 200;
    // The roles of the six column pickers, in the order they are shown.
    enum Column { Date, Description, Amount, Debit, Credit, Category };
    Q_ENUM(Column)

    explicit ImportBridge(QObject *parent = nullptr);

    bool hasFile() const { return !m_files.empty(); }
    QString fileName() const { return m_fileName; }
    QString message() const { return m_message; }
    QString summary() const { return only() ? only()->summary() : QString(); }
    QStringList fileLines() const { return m_fileLines; }
    bool isTable() const { return only() && only()->csv(); }
    bool datesAmbiguous() const { return only() && only()->datesAmbiguous(); }
    bool dayFirst() const { return m_dayFirst; }
    void setDayFirst(bool dayFirst);
    bool readingChangeable() const { return isTable() || (m_files.size() == 1 && m_reading.encoding); }
    static QStringList encodingChoices();
    QString encoding() const;
    void setEncoding(const QString &encoding);
    int separator() const;
    void setSeparator(int separator);
    bool decimalComma() const;
    void setDecimalComma(bool decimalComma);
    QStringList columnChoices() const;
    QVariantList choices() const;
    QString account() const { return m_account; }
    void setAccount(const QString &account);
    bool flip() const { return m_flip; }
    void setFlip(bool flip);
    bool hasPreview() const { return m_hasPreview; }
    int newCount() const { return int(m_new.size()); }
    QString previewTitle() const;
    QVariantList previewLines() const { return m_previewLines; }
    QString importTitle() const;

    // Reads the bank file at `file` (a file address or a plain path). A file that can't
    // be read leaves no file and sets `message`; the name is taken either way.
    Q_INVOKABLE void open(const QUrl &file);
    // Reads several bank files at once, each previewed after the ones before it, so that
    // overlapping downloads bring a line in once. One that can't be read sets `message`
    // and drops them all.
    Q_INVOKABLE void openFiles(const QVariantList &files);
    // Points the picker of `column` (a Column) at picker position `choice` (0 for none).
    Q_INVOKABLE void setChoice(int column, int choice);
    // Adds the preview's new lines to the Book; the Store's status line then reads
    // "Imported <n> transactions from <file name>.". Returns how many were added.
    Q_INVOKABLE int importNow();

Q_SIGNALS:
    void fileChanged();
    void mappingChanged();
    void accountChanged();
    void flipChanged();
    void previewChanged();

private:
    void reload() override;
    // The first active account, unless one was chosen.
    void linked() override;

    // The one file chosen, when there is one and no more.
    BankFile *only() { return m_files.size() == 1 ? &m_files.front() : nullptr; }
    const BankFile *only() const { return m_files.size() == 1 ? &m_files.front() : nullptr; }
    // The table read again with `chosen` over what its bytes show.
    void readTableAs(const CSVImporter::Reading &chosen);

    std::vector<BankFile> m_files;
    QStringList m_names;
    QStringList m_fileLines;
    bool m_dayFirst = false;
    CSVImporter::Reading m_reading; // the encoding, separator and number style the user chose
    QString m_fileName;
    QString m_message;
    QString m_readError; // why the file chosen last cannot be read
    QString m_account;
    bool m_accountChosen = false; // once set, the first active account is no longer taken
    bool m_flip = false;
    bool m_hasPreview = false;
    std::vector<Transaction> m_new;
    int m_skipped = 0;
    int m_bad = 0;
    QVariantList m_previewLines;
};
