-- 0001_system.sql
-- Why: everything a server needs before the first document: the company, its users and their rights,
-- sessions, the keys under which changes were carried out, history, parameters and nomenclatures.
-- FoldName beside Name is its fold (packet/fold.h), by which it is searched and ordered.

create table Company (
  Id                integer not null primary key check (Id = 1),
  Name              text not null,
  ZoneOffsetMinutes integer not null default 120,
  SummerTime        integer not null check (SummerTime in (0, 1)) default 1,
  LanguageName      text not null default 'Български',
  LanguageName2     text,
  MultiLanguage     integer not null check (MultiLanguage in (0, 1)) default 0,
  Demonstration     integer not null check (Demonstration in (0, 1)) default 0,
  -- Rises with every change of a user or of rights, so that a server may keep what it read.
  RightsVersion     integer not null default 1
) strict;
insert into Company (Id, Name) values (1, '');

create table WSysUsers (
  ShortName     text not null primary key,
  UserName      text not null,
  UserName2     text,
  FoldShortName text not null,
  FoldUserName  text not null,
  FoldUserName2 text,
  -- Level of the user: 0 sees everything, 3 and more need an employee record.
  Category      integer not null,
  Language      integer not null default 1,
  PasswordHash  text,
  Blocked       integer not null check (Blocked in (0, 1)) default 0,
  RightsVersion integer not null default 1
) strict, without rowid;
create unique index WSysUsersByFoldShortName on WSysUsers (FoldShortName);
create index WSysUsersByFoldUserName on WSysUsers (FoldUserName, ShortName);
create index WSysUsersByFoldUserName2 on WSysUsers (FoldUserName2, ShortName);

create table UserRights (
  Login  text not null references WSysUsers (ShortName) on delete cascade,
  Point  integer not null,
  -- Bits: open 1, edit 2, insert 4, delete 8.
  Rights integer not null,
  primary key (Login, Point)
) strict, without rowid;

create table Employees (
  Employee  integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text,
  -- Two employees may have one login; such a login has no current employee.
  Login     text references WSysUsers (ShortName) on delete set null
) strict;
create index EmployeesByFoldName on Employees (FoldName, Employee);
create index EmployeesByFoldName2 on Employees (FoldName2, Employee);
create index EmployeesByLogin on Employees (Login);

create table Session (
  TicketHash     text not null primary key,
  SessionName    text not null,
  Login          text not null,
  MachineName    text not null,
  ProgramVersion text not null,
  StartedOn      integer not null,
  LastSeen       integer not null,
  EndedOn        integer
) strict, without rowid;
create index SessionByLogin on Session (Login);
create index SessionByLastSeen on Session (LastSeen);

-- Failed logins of a login or of a machine, told apart by the prefix of Subject.
create table LoginAttempt (
  Subject      text not null primary key,
  Failures     integer not null,
  LastFailedOn integer not null,
  LockedUntil  integer
) strict, without rowid;

create table ClientKey (
  Login       text not null,
  Key         text not null,
  RequestHash text not null,
  Answer      text not null,
  CreatedOn   integer not null,
  primary key (Login, Key)
) strict, without rowid;
create index ClientKeyByCreatedOn on ClientKey (CreatedOn);

create table History (
  Id          integer primary key autoincrement,
  TableName   text not null,
  RowKey      text not null,
  ColumnName  text not null,
  OldValue    text,
  NewValue    text,
  ChangedBy   text not null,
  ChangedOn   integer not null,
  MachineName text not null,
  Kind        text not null check (Kind in ('I', 'U', 'D'))
) strict;
create index HistoryByRow on History (TableName, RowKey, Id);

create table Params (
  ParamGroup integer not null,
  Number     integer not null,
  Value      text,
  primary key (ParamGroup, Number)
) strict, without rowid;

create table NomIn (
  Nomenclature integer not null,
  Element      integer not null,
  Name         text not null,
  Name2        text,
  Name3        text,
  Name4        text,
  Name5        text,
  Name6        text,
  Name7        text,
  Name8        text,
  Name9        text,
  Name10       text,
  FoldName     text not null,
  FoldName2    text,
  primary key (Nomenclature, Element)
) strict, without rowid;

insert into NomIn (Nomenclature, Element, Name, Name2, FoldName, FoldName2)
select column1, column2, column3, column4, orvane_fold(column3), orvane_fold(column4) from (values
  (58, 1, 'Материал', 'Material'),
  (58, 2, 'Услуга', 'Service'),
  (90, 1, 'По списък', 'By list'),
  (90, 2, 'По списък на дата', 'By list on a date'),
  (90, 3, 'По списък до дата', 'By list up to a date'),
  (244, 1, 'Поръчки към доставчици', 'Supplier orders'),
  (244, 2, 'Искания за покупка', 'Purchase requests'),
  (244, 3, 'Доставки', 'Deliveries'),
  (244, 4, 'Фактури от доставчици', 'Supplier invoices'),
  (245, 1, 'Център за разход', 'Cost centre'),
  (245, 2, 'Отдел', 'Section'),
  (245, 3, 'Дирекция', 'Department'),
  (246, 1, 'Финансов', 'Finance'),
  (246, 2, 'Снабдяване', 'Supplies'),
  (246, 3, 'Производствен', 'Production'),
  (246, 4, 'Административен', 'Administration'),
  (247, 1, 'Фактура', 'Invoice'),
  (247, 2, 'Дебитно известие', 'Debit note'),
  (247, 3, 'Кредитно известие', 'Credit note'),
  (247, 4, 'Проформа фактура', 'Pro-forma invoice'),
  (249, 0, 'Анулиран', 'Annulled'),
  (249, 1, 'Отхвърлен', 'Rejected'),
  (249, 2, 'Въведен', 'Entered'),
  (249, 3, 'За одобрение', 'For approval'),
  (249, 4, 'Частично одобрен', 'Partly approved'),
  (249, 5, 'Одобрен', 'Approved'),
  (249, 6, 'В изпълнение', 'Being fulfilled'),
  (249, 7, 'Приключен', 'Completed'),
  (250, 1, 'Не', 'No'),
  (250, 2, 'Да', 'Yes'),
  (251, 1, 'Отхвърлен', 'Rejected'),
  (251, 2, 'Чака одобрение', 'Waiting'),
  (251, 3, 'Одобрен', 'Approved'),
  (251, 4, 'Одобрен служебно', 'Approved by service'),
  (252, 0, 'Анулиран', 'Annulled'),
  (252, 1, 'Блокиран', 'Blocked'),
  (252, 2, 'Въведен', 'Entered'),
  (252, 3, 'Потвърден', 'Confirmed'),
  (252, 4, 'Частично одобрен', 'Partly approved'),
  (252, 5, 'Одобрен', 'Approved'),
  (252, 6, 'В изпълнение', 'Being fulfilled'),
  (252, 7, 'Приключен', 'Completed'),
  (283, 1, 'Цена от списъка за доставка', 'Price of the supply list'),
  (283, 2, 'Цена от последната доставка', 'Price of the last delivery'),
  (292, 1, 'Първоначално оценяване', 'Initial evaluation'),
  (292, 2, 'Периодично оценяване', 'Periodic evaluation')) as list;

-- What was written into history stands.
create trigger HistoryIsNotUpdated before update on History
begin
  select raise(abort, 'history cannot be changed');
end;
create trigger HistoryIsNotDeleted before delete on History
begin
  select raise(abort, 'history cannot be changed');
end;

-- Versions of rights rise with what they stand for, whoever changes it.
create trigger UserRightsAdded after insert on UserRights
begin
  update WSysUsers set RightsVersion = RightsVersion + 1 where ShortName = new.Login;
end;
create trigger UserRightsChanged after update on UserRights
begin
  update WSysUsers set RightsVersion = RightsVersion + 1
    where ShortName in (old.Login, new.Login);
end;
create trigger UserRightsTaken after delete on UserRights
begin
  update WSysUsers set RightsVersion = RightsVersion + 1 where ShortName = old.Login;
end;
create trigger UserChanged after update of Category, Language, PasswordHash, Blocked on WSysUsers
begin
  update WSysUsers set RightsVersion = RightsVersion + 1 where ShortName = new.ShortName;
end;
create trigger RightsVersionRose after update of RightsVersion on WSysUsers
begin
  update Company set RightsVersion = RightsVersion + 1;
end;
create trigger UserAdded after insert on WSysUsers
begin
  update Company set RightsVersion = RightsVersion + 1;
end;
create trigger UserDeleted after delete on WSysUsers
begin
  update Company set RightsVersion = RightsVersion + 1;
end;
