-- 0002_departments.sql
-- Why: the register of departments, whose chiefs decide at the highest levels of approval.

create table Department (
  Code      smallint not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C",
  -- Login of the user who heads the department.
  Chief     text collate "C" not null references WSysUsers (ShortName)
);
create index DepartmentByFoldName on Department (FoldName, Code);
create index DepartmentByFoldName2 on Department (FoldName2 nulls first, Code);
create index DepartmentByChief on Department (Chief);
