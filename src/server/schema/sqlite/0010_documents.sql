-- 0010_documents.sql
-- Why: what all documents share: the counters of their identifiers, and who had a turn in the approval of which.

-- Identifiers of documents: one counter per table, gaps are allowed.
create table DocumentCounter (
  TableName  text not null primary key,
  LastNumber integer not null default 0
) strict, without rowid;
insert into DocumentCounter (TableName) values ('PurchaseOrder'), ('SuppManifacOrder'), ('Deliveries'),
  ('SuppliesContracts');

-- Who has or had a turn in the approval of a document (kinds of nomenclature 244; version 0 where there are none). Rows
-- stay when approval rows go: who once had a document before him keeps seeing it.
create table ApprovalTurn (
  Employee        integer not null references Employees (Employee),
  KindRegister    integer not null,
  DocumentId      integer not null,
  DocumentVersion integer not null,
  primary key (Employee, KindRegister, DocumentId, DocumentVersion)
) strict, without rowid;
